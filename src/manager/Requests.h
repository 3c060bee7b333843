#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "common/JsonWriter.h"
#include "engine/EngineApi.h"
#include "ipc/IPCData.h"

// Requests as tables. A plain request is a row that names the method, the engine's entry and the kind of reply; the
// types of its positional arguments come from the entry's own signature.
namespace TESSARIN_LUMARC {

using TESSARIN_COMMON::ContentView;
using TESSARIN_COMMON::IPCData;

using Handler = std::function<void(IPCData&)>;
using HandlerMap = std::map<std::string, Handler, std::less<>>;

// Answers on the request's own envelope. "main_thread" as a rule.
void ReplyText(IPCData& request, std::string content);
void ReplyNull(IPCData& request);
// A number, a boolean, a string or a record, as JSON text.
template <class T>
void ReplyValue(IPCData& request, const T& value) {
  ReplyText(request, TESSARIN_COMMON::JsonText(value));
}

enum class Reply {
  Null,    // "null", whatever the engine returned
  Number,  // the engine's 64-bit result
  Int,     // its 32-bit result
  Bool,
  String,
};

// A positional argument as the engine takes it. What is missing reads as empty, 0 or false. It holds the text that a
// pointer leads to, and lives until the engine's entry has returned.
template <class T>
class Argument;

template <>
class Argument<const char*> {
 public:
  Argument(const ContentView& content, std::size_t index) : text_(content.String(index)) {}
  operator const char*() const { return text_.c_str(); }

 private:
  std::string text_;
};

template <>
class Argument<std::int64_t> {
 public:
  Argument(const ContentView& content, std::size_t index) : value_(content.Integer(index)) {}
  operator std::int64_t() const { return value_; }

 private:
  std::int64_t value_;
};

template <>
class Argument<bool> {
 public:
  Argument(const ContentView& content, std::size_t index) : value_(content.Boolean(index)) {}
  operator bool() const { return value_; }

 private:
  bool value_;
};

// The types of an entry: EngineEntry<Result(Arguments...)> EngineTable::*.
template <class Member>
struct EntryTypes;
template <class Table, class R, class... A>
struct EntryTypes<EngineEntry<R(A...)> Table::*> {
  using Result = R;
  using Arguments = std::tuple<A...>;
  static constexpr std::size_t kCount = sizeof...(A);

  template <auto Entry>
  static R Call(const ContentView& content) {
    return CallWith<Entry>(content, std::index_sequence_for<A...>());
  }

 private:
  template <auto Entry, std::size_t... I>
  static R CallWith(const ContentView& content, std::index_sequence<I...>) {
    return (EngineApi::GetInstance().*Entry)(Argument<A>(content, I)...);
  }
};

inline const EngineApi& Api() {
  return EngineApi::GetInstance();
}

// One row: what the map holds, and the function behind it.
struct RequestRow {
  const char* method;
  void (*handler)(IPCData& request);
};

template <auto Entry, Reply Kind>
void ForwardRequest(IPCData& request) {
  using Types = EntryTypes<decltype(Entry)>;
  using Result = typename Types::Result;
  if constexpr (Kind == Reply::Null) {
    Types::template Call<Entry>(request.parsed);
    ReplyNull(request);
  } else {
    static_assert(Kind != Reply::Number || std::is_same_v<Result, std::int64_t>);
    static_assert(Kind != Reply::Int || std::is_same_v<Result, std::int32_t>);
    static_assert(Kind != Reply::Bool || std::is_same_v<Result, bool>);
    static_assert(Kind != Reply::String || std::is_same_v<Result, const char*>);
    ReplyValue(request, Types::template Call<Entry>(request.parsed));
  }
}

// For methods that are known and never answered; their callers do not wait.
inline void NeverAnswered(IPCData& /*request*/) {}

// A request that only forwards.
template <auto Entry, Reply Kind>
constexpr RequestRow Forward(const char* method) {
  return {method, ForwardRequest<Entry, Kind>};
}

template <class... Row>
constexpr std::array<RequestRow, sizeof...(Row)> Rows(Row... rows) {
  return {rows...};
}

// A request that needs its manager.
template <class Manager>
struct OwnRow {
  const char* method;
  void (Manager::*handler)(IPCData& request);
};

// A name that is there already keeps its first handler.
template <class Manager>
void AddOwn(HandlerMap& map, Manager& self, std::span<const OwnRow<Manager>> rows) {
  for (const auto& row : rows) {
    map.emplace(row.method, [&self, handler = row.handler](IPCData& request) { (self.*handler)(request); });
  }
}

// Offers requests to a map of handlers: what the four managers have in common. The map is filled once, in the init
// task, and only read afterwards, by "main_thread".
class RequestManager {
 public:
  // Calls the handler of `message_key`; false if the map has none. A handler's own failure leaves as its exception.
  bool handle(IPCData& request) const;

  RequestManager(const RequestManager&) = delete;
  RequestManager& operator=(const RequestManager&) = delete;

 protected:
  RequestManager() = default;
  ~RequestManager() = default;

  void Add(std::span<const RequestRow> rows) {
    for (const RequestRow& row : rows) handlers_.emplace(row.method, row.handler);
  }
  template <class Manager>
  void Add(Manager& self, std::span<const OwnRow<Manager>> rows) {
    AddOwn(handlers_, self, rows);
  }

 private:
  HandlerMap handlers_;
};

}  // namespace TESSARIN_LUMARC
