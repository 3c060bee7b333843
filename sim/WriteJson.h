#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Arguments.h"
#include "common/RapidJson.h"

// Journal lines, generated from the types of an entry's arguments.
namespace sim {

using JsonOut = rapidjson::Writer<rapidjson::StringBuffer>;

inline void WriteText(JsonOut& out, std::string_view text) {
  out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

template <class T>
void WriteValue(JsonOut& out, const T& value);

template <class T>
void WriteList(JsonOut& out, const T* list, std::int64_t count) {
  out.StartArray();
  for (std::int64_t i = 0; i < count; ++i) WriteValue(out, list[i]);
  out.EndArray();
}

template <class T>
void WriteRecord(JsonOut& out, const T& record) {
  out.StartObject();
  TESSARIN_COMMON::ForEachField<T>([&](const auto& field) {
    out.Key(field.name);
    WriteValue(out, record.*(field.member));
  });
  out.EndObject();
}

inline void WriteRecord(JsonOut& out, const EngineIgnoreWindowParam& param) {
  const auto number = [&out](const char* name, std::int64_t value) {
    out.Key(name);
    out.Int64(value);
  };
  out.StartObject();
  number("ignoreType", param.ignoreType);
  out.Key("handleType");
  WriteValue(out, param.handleType);
  out.Key("handleData");
  WriteList(out, param.handleData, param.handleDataCount);
  number("ignoreTypeByPid", param.ignoreTypeByPid);
  number("windowPid", param.windowPid);
  out.Key("windowTitles");
  WriteList(out, param.windowTitles, param.windowTitleCount);
  number("windowLevel", param.windowLevel);
  number("windowHandleIntValue", param.windowHandleIntValue);
  out.EndObject();
}

template <class T>
concept Journalled = TESSARIN_COMMON::Record<T> || std::is_same_v<T, EngineIgnoreWindowParam>;

template <class T>
void WritePointer(JsonOut& out, T* pointer) {
  if (pointer == nullptr) {
    out.Null();
  } else if constexpr (std::is_same_v<T, const char>) {
    WriteText(out, pointer);
  } else if constexpr (std::is_const_v<T> && Journalled<std::remove_const_t<T>>) {
    WriteRecord(out, *pointer);
  } else if constexpr (std::is_function_v<T>) {
    WriteText(out, "function");
  } else {
    WriteText(out, "memory");  // of the caller, to be filled, or of the engine, given back
  }
}

template <class T>
void WriteValue(JsonOut& out, const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    out.Bool(value);
  } else if constexpr (std::is_floating_point_v<T>) {
    out.Double(static_cast<double>(value));
  } else if constexpr (std::is_unsigned_v<T>) {
    out.Uint64(value);
  } else if constexpr (std::is_integral_v<T>) {
    out.Int64(value);
  } else if constexpr (std::is_pointer_v<T>) {
    WritePointer(out, value);
  } else if constexpr (std::is_array_v<T> && std::is_same_v<std::remove_extent_t<T>, char>) {
    const std::string_view all(value, std::extent_v<T>);
    WriteText(out, all.substr(0, all.find('\0')));
  } else if constexpr (std::is_array_v<T>) {
    WriteList(out, value, std::extent_v<T>);
  } else {
    WriteRecord(out, value);
  }
}

// {"entry": name, "args": [...]}
template <class... A>
std::string CallLine(std::string_view entry, const A&... arguments) {
  using Place = Layout<A...>;
  rapidjson::StringBuffer buffer;
  JsonOut out(buffer);
  const auto all = std::tie(arguments...);
  const auto write = [&]<std::size_t I>(std::integral_constant<std::size_t, I>) {
    if constexpr (Place::template IsCount<I>()) {
      return;
    } else if constexpr (constexpr std::size_t count = Place::template CountOf<I>(); count != Place::kNone) {
      WriteList(out, std::get<I>(all), static_cast<std::int64_t>(std::get<count>(all)));
    } else {
      WriteValue(out, std::get<I>(all));
    }
  };
  out.StartObject();
  out.Key("entry");
  WriteText(out, entry);
  out.Key("args");
  out.StartArray();
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (write(std::integral_constant<std::size_t, I>{}), ...);
  }
  (std::index_sequence_for<A...>{});
  out.EndArray();
  out.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace sim
