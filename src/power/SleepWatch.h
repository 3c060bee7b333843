#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace TESSARIN_POWER {

struct SleepCallbacks {
  std::function<void()> onResume;
  std::function<void()> onSuspend;
};

// The system's word of suspend and resume, which reaches only the thread that asked for it. That thread opens, serves
// and closes; Wake may come from any.
class SleepWatch {
 public:
  virtual ~SleepWatch() = default;

  // Failures are lines in the log. What comes is served with these callbacks until the next Open.
  virtual void Open(SleepCallbacks callbacks) = 0;
  virtual void Close() = 0;
  // Whether there is something to serve, which may end by itself.
  [[nodiscard]] virtual bool IsOpen() const = 0;
  // Waits for word from the system, or for Wake, and calls back. A Wake that came before is not lost.
  virtual void Serve() = 0;
  virtual void Wake() = 0;
};

[[nodiscard]] std::unique_ptr<SleepWatch> MakeSystemSleepWatch();

// The numbers of power events, as they stand in the log.
enum class PowerEvent : std::uint32_t { Suspend = 4, StatusChange = 10, ResumeAutomatic = 18 };

// Logs an event and calls back where it is one of the two.
void ProcessPowerEvent(PowerEvent event, const SleepCallbacks& callbacks);

}  // namespace TESSARIN_POWER
