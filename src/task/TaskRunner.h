#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "Thread.h"
#include "common/Clock.h"

namespace TESSARIN_TASK {

// The place that posted a task, as the budget lines show it. The texts are not copied.
struct Location {
  const char* function = "Unknown";
  const char* file = "Unknown";
};

class TaskBatch;
class TaskQueue;
struct Task;

// A queue of closures and the one thread that runs them, in the order of posting. Any thread posts. Closures run with
// no lock held and may post to their own runner; what they throw is caught by nobody and ends the process. A task that
// waited more than 300 ms or ran more than 200 ms leaves a line in the log, and nothing else happens to it. Times are
// those of the system's last tick, some milliseconds old.
class TaskRunner : public Runnable {
 public:
  enum Type : int { kNormal = 0, kMain = 2, kDevice = 3, kCallback = 4, kMonitor = 5 };
  using Closure = std::function<void()>;

  // Makes the thread, named after the type, without starting it.
  explicit TaskRunner(int type, std::unique_ptr<ThreadLocalSlot> slot = std::make_unique<ThreadLocalSlot>(),
                      const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());
  // Does not wait for the thread: stop the runner first.
  ~TaskRunner() override;

  // True if the thread was started; false, with no change, the second time.
  bool StartRunner();
  // Drops what is still queued (a batch that the thread has already taken is run to its end) and joins. What is posted
  // afterwards is queued and never run.
  void StopRunner();

  void PostTask(const Location& location, Closure closure);
  // Posts and blocks until the task has run or was dropped. Deadlocks on the runner's own thread.
  bool PostTaskAndWait(const Location& location, Closure closure);

  [[nodiscard]] bool IsRunning() const { return started_; }
  [[nodiscard]] bool IsCurrentThread() const;

  // The budgets are fixed: whatever is given, 300 and 200 ms stand. Callers that tune them change nothing.
  void SetWaitingBudget(std::uint64_t ms);
  void SetRunningBudget(std::uint64_t ms);

  void Run(Thread* thread) override;

 private:
  void RunBatch(TaskBatch& batch);
  std::int64_t RunTask(Task& task, std::int64_t startMs);
  void SetCurrentKind(std::int32_t kind);
  void LogBudgets(const Task& task, std::int64_t startMs, std::int64_t endMs) const;
  [[nodiscard]] const char* Name() const;

  const std::unique_ptr<ThreadLocalSlot> slot_;
  const std::unique_ptr<Thread> thread_;
  const std::unique_ptr<TaskQueue> queue_;
  const int type_;
  std::uint64_t waitingBudgetMs_ = 300;
  std::uint64_t runningBudgetMs_ = 200;
  std::atomic<bool> started_{false};
  std::atomic<std::int32_t> currentKind_{0};
  const TESSARIN_COMMON::Clock& clock_;
};

}  // namespace TESSARIN_TASK
