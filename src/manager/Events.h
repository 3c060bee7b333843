#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>
#include <type_traits>

#include "RavoManager.h"
#include "common/Fields.h"
#include "common/JsonWriter.h"
#include "engine/EngineApi.h"
#include "ipc/EventArguments.h"

// Engine callbacks as tables. A plain callback is a row that names the registration and the event; the C function that
// the engine calls is generated from the callback's own signature, and turns its arguments into the event's payload.
namespace TESSARIN_LUMARC {

using TESSARIN_COMMON::EventArguments;

// A text as a template argument.
template <std::size_t N>
struct FixedText {
  constexpr FixedText(const char (&literal)[N]) {  // NOLINT: a literal is meant to convert
    for (std::size_t i = 0; i < N; ++i) text[i] = literal[i];
  }
  char text[N] = {};
};

namespace detail {

template <class T>
inline constexpr bool kIsRecordPointer =
    (std::is_pointer_v<T>)&&(TESSARIN_COMMON::Record<std::remove_cv_t<std::remove_pointer_t<T>>>);

template <std::size_t I, class Tuple, bool = (I < std::tuple_size_v<Tuple>)>
struct ElementAt {
  using Type = void;
};
template <std::size_t I, class Tuple>
struct ElementAt<I, Tuple, true> {
  using Type = std::remove_cvref_t<std::tuple_element_t<I, Tuple>>;
};

template <class T>
void AppendList(EventArguments& out, const T* list, std::int32_t count) {
  TESSARIN_COMMON::JsonWriter writer;
  writer.StartArray();
  for (std::int32_t i = 0; i < count; ++i) writer.Add(nullptr, list[i]);
  writer.EndArray();
  out.AddRaw(writer.Text());
}

// Appends the arguments from the I-th on, in their order. A count is an int32_t beside its list, on either side.
template <std::size_t I, class Tuple>
void AppendFrom(EventArguments& out, const Tuple& arguments) {
  using This = typename ElementAt<I, Tuple>::Type;
  using Next = typename ElementAt<I + 1, Tuple>::Type;
  if constexpr (std::is_void_v<This>) {
    return;
  } else if constexpr (kIsRecordPointer<This> && std::is_same_v<Next, std::int32_t>) {
    AppendList(out, std::get<I>(arguments), std::get<I + 1>(arguments));
    AppendFrom<I + 2>(out, arguments);
  } else if constexpr (std::is_same_v<This, std::int32_t> && kIsRecordPointer<Next>) {
    AppendList(out, std::get<I + 1>(arguments), std::get<I>(arguments));
    AppendFrom<I + 2>(out, arguments);
  } else {
    const auto& value = std::get<I>(arguments);
    if constexpr (kIsRecordPointer<This>) {
      out.AddRaw(TESSARIN_COMMON::JsonText(*value));
    } else if constexpr (TESSARIN_COMMON::Record<This>) {
      out.AddRaw(TESSARIN_COMMON::JsonText(value));
    } else {
      static_assert(std::is_same_v<This, const char*> || std::is_same_v<This, bool> ||
                    std::is_same_v<This, std::int64_t>);
      out.Add(value);
    }
    AppendFrom<I + 1>(out, arguments);
  }
}

}  // namespace detail

// Sends an event whose payload is the arguments in their order. Any thread. Without arguments the payload is the plain
// text "[]".
template <class... A>
void SendArguments(const char* event, const A&... arguments) {
  if constexpr (sizeof...(A) == 0) {
    RavoManager::GetInstance().SendEvent(event, "[]");
  } else {
    EventArguments payload;
    detail::AppendFrom<0>(payload, std::tie(arguments...));
    RavoManager::GetInstance().SendEvent(event, payload.Print());
  }
}

// One registration. `event` is what the client hears, for documents and tests: the function knows it.
struct EventRow {
  const char* registration;
  const char* event;
  void (*registerWith)(const EngineApi& api);
};

// The functions that the engine calls. What they throw, for want of memory mostly, ends the process here: the engine's
// own frames are not to be unwound.
template <class Member>
struct CallbackTypes;
template <class Table, class... A>
struct CallbackTypes<EngineEntry<void(void (*)(A...))> Table::*> {
  template <FixedText Event>
  static void SendPlain(A... arguments) noexcept {
    SendArguments(Event.text, arguments...);
  }
  template <auto Function>
  static void CallOwn(A... arguments) noexcept {
    Function(arguments...);
  }
};

// A callback whose arguments are the payload.
template <auto Entry, FixedText Event>
constexpr EventRow Plain(const char* registration) {
  return {registration, Event.text,
          [](const EngineApi& api) { (api.*Entry)(&CallbackTypes<decltype(Entry)>::template SendPlain<Event>); }};
}

// A callback with a function of its own.
template <auto Entry, auto Function>
constexpr EventRow Own(const char* registration, const char* event) {
  return {registration, event, [](const EngineApi& api) {
            (api.*Entry).template Register<&CallbackTypes<decltype(Entry)>::template CallOwn<Function>>();
          }};
}

inline void RegisterAll(std::span<const EventRow> rows) {
  for (const EventRow& row : rows) row.registerWith(EngineApi::GetInstance());
}

template <class... Row>
constexpr std::array<EventRow, sizeof...(Row)> EventRows(Row... rows) {
  return {rows...};
}

}  // namespace TESSARIN_LUMARC
