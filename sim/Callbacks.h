#pragma once

#include <ravo/engine_abi.h>

#include <atomic>
#include <cstdint>
#include <string_view>
#include <tuple>

#include "Arguments.h"
#include "CallbackGate.h"
#include "ReadJson.h"

// The functions that were registered, one slot a registration entry, and the ways to call them.
namespace sim {

template <auto Registration>
using CallbackOf = ArgumentOf<decltype(Registration), 0>;

// Null until the registration.
template <auto Registration>
inline constinit std::atomic<CallbackOf<Registration>> callbackSlot{nullptr};

// Calls back with these arguments, on the caller's thread, which holds no lock. False if nothing is registered or the
// engine was destroyed.
template <auto Registration, class... A>
bool Emit(const A&... arguments) {
  const CallbackGate::Pass pass;
  const auto callback = callbackSlot<Registration>.load();
  if (!pass || callback == nullptr) return false;
  callback(arguments...);
  return true;
}

// The same with arguments from a JSON array; a std::runtime_error if they do not fit.
template <auto Registration>
bool EmitJson(const TESSARIN_COMMON::JsonValue& json) {
  typename Signature<CallbackOf<Registration>>::Tuple arguments{};
  Arena arena;
  ReadArguments(json, arena, arguments);
  return std::apply([](const auto&... argument) { return Emit<Registration>(argument...); }, arguments);
}

// A callback by the name of its registration entry.
struct NamedCallback {
  std::string_view entry;
  bool (*emit)(const TESSARIN_COMMON::JsonValue& json);
};

// Null for a name that is no registration.
[[nodiscard]] const NamedCallback* FindCallback(std::string_view entry);

}  // namespace sim
