#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "PowerMonitorImpl.h"
#include "PowerSource.h"
#include "PowerTimer.h"
#include "common/Singleton.h"

namespace TESSARIN_POWER {

// Who hears of changes. What is empty is skipped. The first three are called on the power timer's thread, the others
// on the runner of the platform part.
struct PowerCallbacks {
  std::function<void(bool on)> saverChange;
  std::function<void(bool onMains)> mainsChange;
  std::function<void(std::int32_t percent)> remainingChange;
  std::function<void()> resume;
  std::function<void()> suspend;
};

// Watches the machine's power: a poll of battery, mains and saver, and the notification of suspend and resume. One
// thread sets the callbacks, and then starts and stops.
class PowerMonitor : public TESSARIN_COMMON::Singleton<PowerMonitor> {
 public:
  // The poll's source and timer, and the system's word of sleep, as a test would have them.
  PowerMonitor(std::unique_ptr<PowerSource> source, std::unique_ptr<SleepWatch> sleep, std::chrono::microseconds tick,
               const TESSARIN_COMMON::Clock& clock);
  ~PowerMonitor();

  // Before the first StartWatch.
  void SetCallbacks(PowerCallbacks callbacks);
  // Polls every so many seconds; with none or less suspend and resume alone are watched. A second call changes nothing.
  void StartWatch(std::int32_t seconds);
  void StopWatch();
  // One poll. What differs from the last poll is told; a reading that cannot be had leaves the last value.
  void InvokeCallback();

 private:
  friend class TESSARIN_COMMON::Singleton<PowerMonitor>;
  PowerMonitor();

  // The timer thread's. What a machine on mains shows counts as told, but for the saver: the first poll tells of it.
  std::int32_t lastRemaining_ = 100;
  bool lastMains_ = true;
  bool lastSaver_ = true;

  std::atomic<bool> running_{false};  // a callback may stop the watch from the timer's thread
  PowerCallbacks callbacks_;
  const std::unique_ptr<PowerSource> source_;
  PowerMonitorImpl impl_;
  PowerTimer timer_;  // last, so that its thread ends first
};

}  // namespace TESSARIN_POWER
