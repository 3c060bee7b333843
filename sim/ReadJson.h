#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "common/JsonDocument.h"

// Arguments of callbacks, built from JSON by the types of the callback. Whatever does not fit is a std::runtime_error.
namespace sim {

// Keeps what the arguments point to until the callback has returned.
class Arena {
 public:
  template <class T>
  T* Keep(T value) {
    auto kept = std::make_shared<T>(std::move(value));
    T* const pointer = kept.get();
    kept_.push_back(std::move(kept));
    return pointer;
  }

 private:
  std::vector<std::shared_ptr<void>> kept_;
};

template <class T>
void ReadValue(const TESSARIN_COMMON::JsonValue& json, Arena& arena, T& out);

inline void Expect(bool fits, const char* what) {
  if (!fits) throw std::runtime_error(std::string("an argument is not ") + what);
}

// A member that is left out is zero, a text empty.
template <class T>
void ReadRecord(const TESSARIN_COMMON::JsonValue& json, Arena& arena, T& out) {
  Expect(json.IsObject(), "an object");
  TESSARIN_COMMON::ForEachField<T>([&](const auto& field) {
    auto& value = out.*(field.member);
    if constexpr (std::is_same_v<std::remove_reference_t<decltype(value)>, const char*>) value = "";
    const auto member = json.FindMember(field.name);
    if (member != json.MemberEnd()) ReadValue(member->value, arena, value);
  });
}

// A list: an array of values, or a string for bytes.
template <class T>
void ReadList(const TESSARIN_COMMON::JsonValue& json, Arena& arena, const T*& out, std::int64_t& count) {
  auto& list = *arena.Keep(std::vector<T>());
  if constexpr (sizeof(T) == 1) {
    Expect(json.IsString(), "a string of bytes");
    list.assign(json.GetString(), json.GetString() + json.GetStringLength());
  } else {
    Expect(json.IsArray(), "a list");
    list.resize(json.Size());
    for (rapidjson::SizeType i = 0; i < json.Size(); ++i) ReadValue(json[i], arena, list[i]);
  }
  out = list.data();
  count = static_cast<std::int64_t>(list.size());
}

template <class T>
void ReadPointer(const TESSARIN_COMMON::JsonValue& json, Arena& arena, T*& out) {
  if (json.IsNull()) {
    out = nullptr;
  } else if constexpr (std::is_same_v<T, const char>) {
    Expect(json.IsString(), "a string");
    out = arena.Keep(std::string(json.GetString(), json.GetStringLength()))->c_str();
  } else if constexpr (TESSARIN_COMMON::Record<std::remove_const_t<T>>) {
    auto& record = *arena.Keep(std::remove_const_t<T>{});
    ReadRecord(json, arena, record);
    out = &record;
  } else {
    throw std::runtime_error("this callback cannot be fired from JSON");
  }
}

template <std::size_t N>
void ReadFixedText(const TESSARIN_COMMON::JsonValue& json, char (&out)[N]) {
  Expect(json.IsString(), "a string");
  const std::size_t length = std::min<std::size_t>(json.GetStringLength(), N - 1);
  std::memcpy(out, json.GetString(), length);
  out[length] = '\0';
}

template <class T>
void ReadValue(const TESSARIN_COMMON::JsonValue& json, Arena& arena, T& out) {
  if constexpr (std::is_arithmetic_v<T>) {
    Expect(json.IsNumber() || json.IsBool(), "a number");
    if (json.IsBool()) {
      out = static_cast<T>(json.GetBool());
    } else if (json.IsInt64()) {
      out = static_cast<T>(json.GetInt64());
    } else {
      out = static_cast<T>(json.GetDouble());
    }
  } else if constexpr (std::is_pointer_v<T>) {
    ReadPointer(json, arena, out);
  } else if constexpr (std::is_array_v<T> && std::is_same_v<std::remove_extent_t<T>, char>) {
    ReadFixedText(json, out);
  } else if constexpr (TESSARIN_COMMON::Record<T>) {
    ReadRecord(json, arena, out);
  } else {
    throw std::runtime_error("this callback cannot be fired from JSON");
  }
}

// Fills the arguments in order; a list and its count take one element of the JSON array.
template <class... A>
void ReadArguments(const TESSARIN_COMMON::JsonValue& json, Arena& arena, std::tuple<A...>& out) {
  using Place = Layout<A...>;
  Expect(json.IsArray(), "in an array");
  rapidjson::SizeType next = 0;
  const auto read = [&]<std::size_t I>(std::integral_constant<std::size_t, I>) {
    if constexpr (!Place::template IsCount<I>()) {
      Expect(next < json.Size(), "there");
      const auto& element = json[next++];
      if constexpr (constexpr std::size_t at = Place::template CountOf<I>(); at != Place::kNone) {
        std::int64_t count = 0;
        ReadList(element, arena, std::get<I>(out), count);
        std::get<at>(out) = static_cast<std::tuple_element_t<at, std::tuple<A...>>>(count);
      } else {
        ReadValue(element, arena, std::get<I>(out));
      }
    }
  };
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    (read(std::integral_constant<std::size_t, I>{}), ...);
  }
  (std::index_sequence_for<A...>{});
  Expect(next == json.Size(), "wanted");
}

}  // namespace sim
