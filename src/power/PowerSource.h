#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace TESSARIN_POWER {

// What the machine tells of its power, one reading a call. Read by the power timer's thread alone; a call may wait for
// the system, about a second at most. Nothing stands for a reading that cannot be had.
class PowerSource {
 public:
  static constexpr std::int32_t kNoBattery = 255;

  virtual ~PowerSource() = default;
  // 0 to 100; kNoBattery and above for a machine without one.
  [[nodiscard]] virtual std::optional<std::int32_t> BatteryPercent() = 0;
  [[nodiscard]] virtual std::optional<bool> OnMains() = 0;
  [[nodiscard]] virtual std::optional<bool> SaverOn() = 0;
};

[[nodiscard]] std::unique_ptr<PowerSource> MakeSystemPowerSource();

}  // namespace TESSARIN_POWER
