#include "../PowerSource.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string_view>

#include "SystemBus.h"
#include "common/Platform.h"
#include "log/LogInstance.h"

namespace TESSARIN_POWER {

namespace {

constexpr BusService kPower{"org.freedesktop.UPower", "/org/freedesktop/UPower", "org.freedesktop.UPower"};
// All batteries together, as desktops show them.
constexpr BusService kBattery{kPower.name, "/org/freedesktop/UPower/devices/DisplayDevice",
                              "org.freedesktop.UPower.Device"};
constexpr BusService kProfiles{"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles"};

// Asks the services that desktops ask: one for battery and mains, one for the power profile, whose "power-saver" is
// what a battery saver is elsewhere.
class SystemPowerSource final : public PowerSource {
 public:
  std::optional<std::int32_t> BatteryPercent() override {
    int present = 0;
    double percent = 0;
    if (!Read(kBattery, "IsPresent", 'b', &present)) return std::nullopt;
    if (present == 0) return kNoBattery;
    if (!Read(kBattery, "Percentage", 'd', &percent)) return std::nullopt;
    return static_cast<std::int32_t>(std::lround(percent));
  }

  std::optional<bool> OnMains() override {
    int onBattery = 0;
    if (!Read(kPower, "OnBattery", 'b', &onBattery)) return std::nullopt;
    return onBattery == 0;
  }

  std::optional<bool> SaverOn() override {
    if (!Connected()) return std::nullopt;
    char* profile = nullptr;
    const int result = sd_bus_get_property_string(bus_.Get(), kProfiles.name, kProfiles.path, kProfiles.interface,
                                                  "ActiveProfile", nullptr, &profile);
    if (!Succeeded(kProfiles, result)) return std::nullopt;
    const bool on = std::string_view(profile) == "power-saver";
    std::free(profile);
    return on;
  }

 private:
  bool Read(const BusService& service, const char* property, char type, void* value) {
    if (!Connected()) return false;
    return Succeeded(service, sd_bus_get_property_trivial(bus_.Get(), service.name, service.path, service.interface,
                                                          property, nullptr, type, value));
  }

  // A bus that was lost is looked for again at the next reading.
  bool Connected() {
    if (bus_ && sd_bus_is_open(bus_.Get()) <= 0) bus_.Reset();
    if (!bus_) bus_ = OpenSystemBus();
    if (!bus_) ReportOnce("the system bus", errno);
    return static_cast<bool>(bus_);
  }

  bool Succeeded(const BusService& service, int result) {
    if (result < 0) ReportOnce(service.name, -result);
    return result >= 0;
  }

  void ReportOnce(const char* who, int error) {
    if (!reported_.insert(who).second) return;
    TESSARIN_LOG::Log("no power state from {}, the last one stands: {}", who, TESSARIN_COMMON::SystemErrorText(error));
  }

  BusHandle bus_;
  std::set<std::string_view> reported_;
};

}  // namespace

std::unique_ptr<PowerSource> MakeSystemPowerSource() {
  return std::make_unique<SystemPowerSource>();
}

}  // namespace TESSARIN_POWER
