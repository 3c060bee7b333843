#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <utility>

#include "Thread.h"
#include "common/Clock.h"

namespace TESSARIN_TASK {

// Repeating timers on one thread, "timer_thread". A timer first fires one interval after it was added and then until
// it is cancelled, within about a tick of 10 ms of its time; one that was missed fires once. Any thread adds and
// cancels; closures run one after the other, in the order in which the timers were made, and may add and cancel too.
class TimerTaskRunner : public Runnable {
 public:
  using Closure = std::function<void()>;

  explicit TimerTaskRunner(const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());
  // Does not wait for the thread: stop the runner first.
  ~TimerTaskRunner() override;

  // The hooks, which may be empty, run on the timer thread at its start and end. False the second time.
  bool StartRunner(Closure startHook, Closure stopHook);
  void StopRunner();

  // The id of the new timer, from 1; -1 for an interval of 0 or an empty closure, and after 999999 timers.
  std::int32_t AddTimer(std::uint32_t intervalMs, Closure closure);
  // Called from another thread, it waits for a closure that is running, and the timer's own never begins after it
  // returns; the timer thread itself does not wait. An unknown id does nothing.
  void CancelTimer(std::int32_t id);

  [[nodiscard]] bool IsRunning() const { return started_; }
  [[nodiscard]] bool IsCurrentThread() const { return thread_->IsCurrent(); }

  void Run(Thread* thread) override;

 private:
  struct Timer {
    Timer(std::int32_t timerId, std::uint32_t ms, std::int64_t firstMs, Closure work)
        : id(timerId), intervalMs(ms), nextMs(firstMs), closure(std::move(work)) {}

    std::int32_t id;
    std::uint32_t intervalMs;
    std::int64_t nextMs;  // steady; the timer thread's once the record is in the list
    Closure closure;
    std::atomic<bool> cancelled{false};
  };

  void Pass();
  [[nodiscard]] std::list<Timer*> TakeDue(std::int64_t nowMs);

  const TESSARIN_COMMON::Clock& clock_;
  ThreadLocalSlot slot_;
  const std::unique_ptr<Thread> thread_;

  // CancelTimer alone takes both, the run mutex first: a running closure may want the list, so whoever waits for it
  // to end must not hold the list.
  std::mutex runMutex_;   // held while closures run
  std::mutex listMutex_;  // guards timers_ and nextId_
  std::condition_variable wake_;
  std::list<Timer> timers_;  // in the order of creation
  std::int32_t nextId_ = 1;

  std::int64_t tickMs_ = 0;
  std::int64_t usedMs_ = 0;  // the timer thread's: what the last pass took
  Closure startHook_;
  Closure stopHook_;
  std::atomic<bool> started_{false};
};

}  // namespace TESSARIN_TASK
