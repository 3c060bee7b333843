#include "../PowerSource.h"

#include <windows.h>

namespace TESSARIN_POWER {

namespace {

// A failure is not looked at: the readings are then those of a dead battery.
SYSTEM_POWER_STATUS Status() {
  SYSTEM_POWER_STATUS status = {};
  GetSystemPowerStatus(&status);
  return status;
}

class SystemPowerSource final : public PowerSource {
 public:
  std::optional<std::int32_t> BatteryPercent() override { return Status().BatteryLifePercent; }
  std::optional<bool> OnMains() override { return Status().ACLineStatus == 1; }
  // Older headers call the byte reserved, as it was before there was a saver.
  std::optional<bool> SaverOn() override { return SystemStatusFlag(Status()) == 1; }

 private:
  static BYTE SystemStatusFlag(const SYSTEM_POWER_STATUS& status) {
    constexpr std::size_t kOffset = 3;
    return reinterpret_cast<const BYTE*>(&status)[kOffset];
  }
};

}  // namespace

std::unique_ptr<PowerSource> MakeSystemPowerSource() {
  return std::make_unique<SystemPowerSource>();
}

}  // namespace TESSARIN_POWER
