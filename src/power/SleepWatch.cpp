#include "SleepWatch.h"

#include "log/LogInstance.h"

namespace TESSARIN_POWER {

using TESSARIN_LOG::Log;

void ProcessPowerEvent(PowerEvent event, const SleepCallbacks& callbacks) {
  Log("ProcessWmPowerBroadcastMessage event_id:{}", static_cast<std::uint32_t>(event));
  switch (event) {
    case PowerEvent::Suspend:
      Log("on power event: PBT_APMSUSPEND");
      if (callbacks.onSuspend) callbacks.onSuspend();
      break;
    case PowerEvent::StatusChange:
      Log("on power event: PBT_APMPOWERSTATUSCHANGE");  // the poll does this job
      break;
    case PowerEvent::ResumeAutomatic:
      Log("on power event: PBT_APMRESUMEAUTOMATIC");
      if (callbacks.onResume) callbacks.onResume();
      break;
  }
}

}  // namespace TESSARIN_POWER
