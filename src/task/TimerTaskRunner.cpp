#include "TimerTaskRunner.h"

#include <chrono>
#include <utility>

#include "ThreadPlatform.h"
#include "log/LogInstance.h"
#include "log/ScopeTracer.h"

namespace TESSARIN_TASK {

namespace {

using TESSARIN_LOG::Level;
using TESSARIN_LOG::LogAt;
using TESSARIN_LOG::ScopeTracer;

constexpr const char* kModule = "TESSARIN_TASK";
constexpr const char* kThreadName = "timer_thread";
constexpr std::int64_t kTickMs = 10;
constexpr std::int32_t kMaxTimerId = 999999;

}  // namespace

TimerTaskRunner::TimerTaskRunner(const TESSARIN_COMMON::Clock& clock)
    : clock_(clock), thread_(std::make_unique<Thread>(&slot_)) {
  const ScopeTracer trace("TESSARIN_TASK::TimerTaskRunner::TimerTaskRunner", kModule);
  thread_->SetName(kThreadName);
  LogAt(kModule, Level::Progress, "TimerTaskRunner created.");
}

TimerTaskRunner::~TimerTaskRunner() {
  const ScopeTracer trace("TESSARIN_TASK::TimerTaskRunner::~TimerTaskRunner", kModule);
  LogAt(kModule, Level::Progress, "TimerTaskRunner destroyed.");
}

bool TimerTaskRunner::StartRunner(Closure startHook, Closure stopHook) {
  const ScopeTracer trace("TESSARIN_TASK::TimerTaskRunner::StartRunner", kModule);
  if (started_.exchange(true)) return false;
  startHook_ = std::move(startHook);
  stopHook_ = std::move(stopHook);
  tickMs_ = kTickMs;
  LogAt(kModule, Level::Progress, "TimerTaskRunner start runner.");
  return thread_->Start(this);
}

void TimerTaskRunner::StopRunner() {
  const ScopeTracer trace("TESSARIN_TASK::TimerTaskRunner::StopRunner", kModule);
  if (!started_.exchange(false)) return;
  {
    const std::lock_guard lock(listMutex_);
    thread_->Stop();
    wake_.notify_one();
  }
  thread_->Join();
  LogAt(kModule, Level::Progress, "TimerTaskRunner stop.");
}

std::int32_t TimerTaskRunner::AddTimer(std::uint32_t intervalMs, Closure closure) {
  if (intervalMs == 0 || !closure) return -1;
  const std::lock_guard lock(listMutex_);
  const std::int32_t id = nextId_++;
  if (id > kMaxTimerId) {
    LogAt(kModule, Level::Failure, "timer id large than 999999.");
    return -1;
  }
  timers_.emplace_back(id, intervalMs, clock_.SteadyMs() + intervalMs, std::move(closure));
  return id;
}

void TimerTaskRunner::CancelTimer(std::int32_t id) {
  if (id > kMaxTimerId) return;
  std::unique_lock running(runMutex_, std::defer_lock);
  if (!IsCurrentThread()) running.lock();
  const std::lock_guard lock(listMutex_);
  for (Timer& timer : timers_) {
    if (timer.id != id) continue;
    timer.cancelled = true;
    return;
  }
}

void TimerTaskRunner::Run(Thread* thread) {
  if (thread == nullptr) return;
  LogAt(kModule, Level::Progress, "TimerTaskRunner Running, thread name: {}", kThreadName);
  const long runtime = InitialiseThreadRuntime();
  if (runtime != 0) LogAt(kModule, Level::Unexpected, "com initializeer execute failed. hr: {}", runtime);
  if (startHook_) startHook_();
  while (!thread->StopRequested()) {
    Pass();
    std::unique_lock lock(listMutex_);
    if (thread->StopRequested()) break;
    wake_.wait_for(lock, std::chrono::milliseconds(tickMs_ > usedMs_ ? tickMs_ - usedMs_ : 1));
  }
  {
    const std::lock_guard lock(listMutex_);
    timers_.clear();
  }
  if (stopHook_) stopHook_();
  if (runtime == 0) UninitialiseThreadRuntime();
}

// One round over the timers. The two locks are never held together here, so a closure may add and cancel.
void TimerTaskRunner::Pass() {
  const std::int64_t nowMs = clock_.SteadyMs();
  const std::list<Timer*> due = TakeDue(nowMs);
  {
    const std::lock_guard running(runMutex_);
    for (Timer* timer : due) {
      if (timer->cancelled || !timer->closure) continue;
      timer->closure();
      timer->nextMs = nowMs + timer->intervalMs;  // in phase with the pass; a timer that was missed fires once
    }
  }
  usedMs_ = clock_.SteadyMs() - nowMs;
}

std::list<TimerTaskRunner::Timer*> TimerTaskRunner::TakeDue(std::int64_t nowMs) {
  std::list<Timer*> due;
  const std::lock_guard lock(listMutex_);
  for (auto timer = timers_.begin(); timer != timers_.end();) {
    if (timer->cancelled) {
      timer = timers_.erase(timer);
      continue;
    }
    if (nowMs >= timer->nextMs) due.push_back(&*timer);
    ++timer;
  }
  return due;
}

}  // namespace TESSARIN_TASK
