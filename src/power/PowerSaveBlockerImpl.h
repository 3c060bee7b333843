#pragma once

#include <memory>

#include "PowerRequests.h"

namespace TESSARIN_POWER {

// Holds up to two power requests, each of its own. Belongs to one thread. What is held when the process ends is dropped
// by the system.
class PowerSaveBlockerImpl {
 public:
  explicit PowerSaveBlockerImpl(std::unique_ptr<PowerRequests> requests = MakeSystemPowerRequests());

  // True if held, also from before. After a failure, which the log tells, nothing is held and the next start tries
  // anew.
  bool StartPreventDisplaySleep();
  bool StartPreventAppSuspension();
  void StopPreventDisplaySleep();
  void StopPreventAppSuspension();

 private:
  using Handle = PowerRequests::Handle;

  [[nodiscard]] Handle CreatePowerRequest(PowerRequestType type);
  void DeletePowerRequest(Handle handle, PowerRequestType type);
  void Clear(Handle handle, PowerRequestType type);

  const std::unique_ptr<PowerRequests> requests_;
  Handle appSuspension_ = PowerRequests::kNone;
  Handle displaySleep_ = PowerRequests::kNone;
};

}  // namespace TESSARIN_POWER
