#pragma once

#include <cstdint>
#include <functional>

#include "common/Clock.h"
#include "task/TimerTaskRunner.h"

namespace TESSARIN_LUMARC {

// Watches over a join: reports one that nobody has stopped after 50 seconds, and again every 50 seconds. "main_thread"
// calls; the report runs on the timer thread.
class JoinTimer {
 public:
  JoinTimer(TESSARIN_TASK::TimerTaskRunner& timers, std::function<void()> report,
            const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());

  // A second start takes the first one's place; the first goes on reporting with nobody to stop it. Wanted.
  void Start();
  void Stop();
  [[nodiscard]] std::int64_t ElapsedMs() const;  // since the last start

 private:
  TESSARIN_TASK::TimerTaskRunner& timers_;
  const std::function<void()> report_;
  const TESSARIN_COMMON::Clock& clock_;
  std::int32_t timerId_ = 0;
  std::int64_t startNs_ = 0;
};

}  // namespace TESSARIN_LUMARC
