#pragma once

#include "PowerSaveBlockerImpl.h"
#include "common/Singleton.h"

namespace TESSARIN_POWER {

// Keeps the machine awake during a meeting: the display on, and the application from being suspended. "main_thread"
// calls. Today's clients ask for the first alone and never give it back: it ends with the process.
class PowerSaveBlocker : public TESSARIN_COMMON::Singleton<PowerSaveBlocker> {
 public:
  bool StartPreventDisplaySleep() { return impl_.StartPreventDisplaySleep(); }
  bool StartPreventAppSuspension() { return impl_.StartPreventAppSuspension(); }
  void StopPreventDisplaySleep() { impl_.StopPreventDisplaySleep(); }
  void StopPreventAppSuspension() { impl_.StopPreventAppSuspension(); }

 private:
  friend class TESSARIN_COMMON::Singleton<PowerSaveBlocker>;
  PowerSaveBlocker();
  ~PowerSaveBlocker();

  PowerSaveBlockerImpl impl_;
};

}  // namespace TESSARIN_POWER
