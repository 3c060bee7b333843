#include "SystemBus.h"

#include <cerrno>

#include "common/Clock.h"

namespace TESSARIN_POWER {

namespace {

std::int64_t NowUs() {
  return TESSARIN_COMMON::Clock::System().SteadyNs() / 1000;
}

// The library's own bound for a bus that takes the connection and then says nothing is a minute and a half.
int WaitUntilReady(sd_bus* bus) {
  const std::int64_t endUs = NowUs() + static_cast<std::int64_t>(kBusWaitUs);
  for (;;) {
    int result = sd_bus_process(bus, nullptr);
    if (result < 0) return result;
    if (sd_bus_is_ready(bus) > 0) return 0;
    if (result > 0) continue;
    const std::int64_t leftUs = endUs - NowUs();
    if (leftUs <= 0) return -ETIMEDOUT;
    result = sd_bus_wait(bus, static_cast<std::uint64_t>(leftUs));
    if (result < 0 && result != -EINTR) return result;
  }
}

}  // namespace

BusHandle OpenSystemBus() {
  sd_bus* raw = nullptr;
  int result = sd_bus_open_system(&raw);
  BusHandle bus(raw);
  if (result >= 0) result = WaitUntilReady(raw);
  if (result >= 0) result = sd_bus_set_method_call_timeout(raw, kBusWaitUs);
  if (result < 0) {
    bus.Reset();
    errno = -result;
  }
  return bus;
}

}  // namespace TESSARIN_POWER
