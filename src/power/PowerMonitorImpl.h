#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "SleepWatch.h"
#include "task/TaskRunner.h"

namespace TESSARIN_POWER {

// Waits for suspend and resume on a runner of its own. Any thread calls; the callbacks come on the runner.
class PowerMonitorImpl {
 public:
  explicit PowerMonitorImpl(std::unique_ptr<SleepWatch> watch = MakeSystemSleepWatch());
  // Closes the watch and waits for the runner.
  ~PowerMonitorImpl();
  PowerMonitorImpl(const PowerMonitorImpl&) = delete;
  PowerMonitorImpl& operator=(const PowerMonitorImpl&) = delete;

  // Both post and return at once: what fails is a line in the log.
  bool StartPowerMonitor(std::function<void()> resume, std::function<void()> suspend);
  void StopPowerMonitor();

 private:
  void Post(TESSARIN_TASK::TaskRunner::Closure closure);
  void Serve();

  const std::unique_ptr<SleepWatch> watch_;  // the runner's, but for Wake
  std::atomic<int> queued_{0};               // tasks posted and not begun
  TESSARIN_TASK::TaskRunner runner_{TESSARIN_TASK::TaskRunner::kNormal};
};

}  // namespace TESSARIN_POWER
