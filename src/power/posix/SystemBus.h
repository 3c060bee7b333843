#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>

#include "common/OwningHandle.h"

namespace TESSARIN_POWER {

struct BusTraits {
  using Type = sd_bus*;
  static constexpr Type None() { return nullptr; }
  static void Close(Type bus) { sd_bus_close_unref(bus); }  // without a wait for what was not sent
};
// A connection to the system's message bus; belongs to one thread.
using BusHandle = TESSARIN_COMMON::OwningHandle<BusTraits>;

// How long a call waits for the bus or for a service behind it.
inline constexpr std::uint64_t kBusWaitUs = 1'000'000;

// Empty, with errno, if there is no bus or it does not answer in time. Calls on the connection have the same bound.
[[nodiscard]] BusHandle OpenSystemBus();

// A system service: its name on the bus, and the object and interface that are called.
struct BusService {
  const char* name;
  const char* path;
  const char* interface;
};

inline constexpr BusService kLogin{"org.freedesktop.login1", "/org/freedesktop/login1",
                                   "org.freedesktop.login1.Manager"};

}  // namespace TESSARIN_POWER
