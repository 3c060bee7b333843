#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "common/Clock.h"

namespace TESSARIN_POWER {

// Repeating timers for slow work that may wait for the system, so that those of the server never wait for it. One
// unnamed thread goes through them once a tick. One thread starts and stops; any thread adds and cancels, closures too.
class PowerTimer {
 public:
  using Closure = std::function<void()>;
  static constexpr std::chrono::microseconds kTick{1'000'000};

  explicit PowerTimer(std::chrono::microseconds tick = kTick,
                      const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());
  // Stops the thread if there is one. Not on the timer's own thread.
  ~PowerTimer();
  PowerTimer(const PowerTimer&) = delete;
  PowerTimer& operator=(const PowerTimer&) = delete;

  [[nodiscard]] bool HasThread() const { return thread_.joinable(); }
  // The hooks, which may be empty, run on the new thread at its start and end. Nothing happens while a thread runs;
  // where the system has no thread to give, a line tells it, and no timer can be added.
  void StartThread(Closure startHook, Closure stopHook);
  // Waits for the end of the thread and drops all timers. Throws std::runtime_error on the timer's own thread and
  // without a thread.
  void StopThread();

  // The id of the new timer, from 0; -1 for an interval that is not positive, an empty closure, without a thread, and
  // after 999999 timers. First fires one interval from now.
  std::int32_t AddTimer(std::int64_t intervalUs, Closure closure);
  // Called from another thread, it waits for a closure that is running. An unknown id does nothing.
  void CancelTimer(std::int32_t id);

 private:
  struct Timer {
    std::int32_t id;
    std::int64_t intervalUs;
    std::int64_t nextUs;  // steady
    Closure closure;
  };

  void Run();
  void Pass();
  [[nodiscard]] std::vector<Timer> TakeDue(std::int64_t nowUs);
  [[nodiscard]] bool IsCancelled(std::int32_t id);
  [[nodiscard]] bool IsCurrentThread() const { return std::this_thread::get_id() == thread_.get_id(); }

  const std::chrono::microseconds tick_;
  const TESSARIN_COMMON::Clock& clock_;
  std::thread thread_;
  Closure startHook_;
  Closure stopHook_;

  // A cancel takes both, the run mutex first.
  std::mutex runMutex_;   // held while closures run
  std::mutex listMutex_;  // guards what follows
  std::condition_variable wake_;
  bool stop_ = false;
  std::vector<Timer> timers_;
  std::vector<std::int32_t> cancelled_;  // still to be removed by the next pass
  std::int32_t nextId_ = 0;
};

}  // namespace TESSARIN_POWER
