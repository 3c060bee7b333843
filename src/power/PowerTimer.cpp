#include "PowerTimer.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "log/LogInstance.h"

namespace TESSARIN_POWER {

namespace {

constexpr std::int32_t kTimerIds = 999999;

std::int64_t NowUs(const TESSARIN_COMMON::Clock& clock) {
  return clock.SteadyNs() / 1000;
}

}  // namespace

PowerTimer::PowerTimer(std::chrono::microseconds tick, const TESSARIN_COMMON::Clock& clock)
    : tick_(tick), clock_(clock) {}

PowerTimer::~PowerTimer() {
  if (HasThread()) StopThread();
}

void PowerTimer::StartThread(Closure startHook, Closure stopHook) {
  if (HasThread()) return;
  startHook_ = std::move(startHook);
  stopHook_ = std::move(stopHook);
  stop_ = false;
  try {
    thread_ = std::thread([this] { Run(); });
  } catch (const std::system_error& error) {
    TESSARIN_LOG::LogAt("TESSARIN_POWER", TESSARIN_LOG::Level::Failure, "no thread for the power timer: {}",
                        error.what());
  }
}

void PowerTimer::StopThread() {
  if (!HasThread()) throw std::runtime_error("no timer thread running");
  if (IsCurrentThread()) throw std::runtime_error("Cannot be call stopThread in timer callback");
  {
    const std::lock_guard lock(listMutex_);
    stop_ = true;
    wake_.notify_one();
  }
  thread_.join();
}

std::int32_t PowerTimer::AddTimer(std::int64_t intervalUs, Closure closure) {
  if (intervalUs <= 0 || !closure || !HasThread()) return -1;
  const std::lock_guard lock(listMutex_);
  if (nextId_ >= kTimerIds) return -1;
  timers_.push_back({nextId_, intervalUs, NowUs(clock_) + intervalUs, std::move(closure)});
  return nextId_++;
}

void PowerTimer::CancelTimer(std::int32_t id) {
  std::unique_lock running(runMutex_, std::defer_lock);
  if (!IsCurrentThread()) running.lock();
  const std::lock_guard lock(listMutex_);
  cancelled_.push_back(id);
}

void PowerTimer::Run() {
  if (startHook_) startHook_();
  for (;;) {
    const std::int64_t beginUs = NowUs(clock_);
    Pass();
    const std::chrono::microseconds used(NowUs(clock_) - beginUs);
    std::unique_lock lock(listMutex_);
    wake_.wait_for(lock, tick_ - used % tick_, [this] { return stop_; });
    if (stop_) break;
  }
  {
    const std::lock_guard lock(listMutex_);
    timers_.clear();
    cancelled_.clear();
  }
  if (stopHook_) stopHook_();
}

// The two locks are never held together here, so a closure may add and cancel.
void PowerTimer::Pass() {
  const std::vector<Timer> due = TakeDue(NowUs(clock_));
  const std::lock_guard running(runMutex_);
  for (const Timer& timer : due) {
    if (!IsCancelled(timer.id)) timer.closure();
  }
}

std::vector<PowerTimer::Timer> PowerTimer::TakeDue(std::int64_t nowUs) {
  const std::lock_guard lock(listMutex_);
  for (const std::int32_t id : std::exchange(cancelled_, {})) {
    std::erase_if(timers_, [id](const Timer& timer) { return timer.id == id; });
  }
  std::vector<Timer> due;
  for (Timer& timer : timers_) {
    if (nowUs < timer.nextUs) continue;
    timer.nextUs = nowUs + timer.intervalUs;
    due.push_back(timer);
  }
  return due;
}

bool PowerTimer::IsCancelled(std::int32_t id) {
  const std::lock_guard lock(listMutex_);
  return std::find(cancelled_.begin(), cancelled_.end(), id) != cancelled_.end();
}

}  // namespace TESSARIN_POWER
