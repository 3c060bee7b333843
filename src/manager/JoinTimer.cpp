#include "JoinTimer.h"

#include <utility>

namespace TESSARIN_LUMARC {

namespace {
constexpr std::uint32_t kTimeoutMs = 50000;
}  // namespace

JoinTimer::JoinTimer(TESSARIN_TASK::TimerTaskRunner& timers, std::function<void()> report,
                     const TESSARIN_COMMON::Clock& clock)
    : timers_(timers), report_(std::move(report)), clock_(clock) {}

void JoinTimer::Start() {
  startNs_ = clock_.SteadyNs();
  timerId_ = timers_.AddTimer(kTimeoutMs, report_);
}

void JoinTimer::Stop() {
  timers_.CancelTimer(timerId_);
}

std::int64_t JoinTimer::ElapsedMs() const {
  return (clock_.SteadyNs() - startNs_) / 1'000'000;
}

}  // namespace TESSARIN_LUMARC
