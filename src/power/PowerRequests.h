#pragma once

#include <cstdint>
#include <memory>

namespace TESSARIN_POWER {

// As Windows numbers them.
enum class PowerRequestType : std::int32_t {
  DisplayRequired = 0,
  SystemRequired = 1,
  ExecutionRequired = 3,  // known since Windows 8
};

// The system's power requests: made with the reason "MyPowerSaveBlocker", then set for one type, cleared and closed.
// "main_thread" calls, and waits about a second at most. The error of a failure is in LastSystemError.
class PowerRequests {
 public:
  using Handle = std::intptr_t;
  static constexpr Handle kNone = -1;

  virtual ~PowerRequests() = default;
  [[nodiscard]] virtual Handle Create() = 0;  // kNone for a failure
  [[nodiscard]] virtual bool Set(Handle handle, PowerRequestType type) = 0;
  [[nodiscard]] virtual bool Clear(Handle handle, PowerRequestType type) = 0;
  virtual void Close(Handle handle) = 0;
  // What keeps an application from being suspended on this system.
  [[nodiscard]] virtual PowerRequestType ApplicationType() const = 0;
};

[[nodiscard]] std::unique_ptr<PowerRequests> MakeSystemPowerRequests();

}  // namespace TESSARIN_POWER
