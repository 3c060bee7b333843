#include "TaskRunner.h"

#include <condition_variable>
#include <mutex>
#include <semaphore>
#include <string>
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

std::atomic<std::uint64_t> nextTaskId{0};  // shared by all runners

const char* TypeName(int type) {
  switch (type) {
    case TaskRunner::kNormal:
      return "normal_thread";
    case TaskRunner::kMain:
      return "main_thread";
    case TaskRunner::kDevice:
      return "device_thread";
    case TaskRunner::kCallback:
      return "callback_thread";
    case TaskRunner::kMonitor:
      return "monitor_thread";
    default:
      return "unknown";
  }
}

// Zero where one of the two times is missing, and where the wall clock was set back in between.
std::uint64_t Span(std::int64_t fromMs, std::int64_t toMs) {
  return fromMs == 0 || toMs == 0 || toMs < fromMs ? 0 : static_cast<std::uint64_t>(toMs - fromMs);
}

}  // namespace

struct TaskRunner::Task {
  // "function@file", cut to what a line shows.
  [[nodiscard]] std::string LocationText() const {
    constexpr std::size_t kMaxLocation = 255;
    return (std::string(location.function) + '@' + location.file).substr(0, kMaxLocation);
  }

  Task* next = nullptr;
  std::uint64_t id = 0;
  Location location;
  std::int64_t postMs = 0;  // wall clock, as the two below; 0 until then
  std::int64_t startMs = 0;
  std::int64_t endMs = 0;
  Closure closure;
  std::binary_semaphore* done = nullptr;  // of a blocking post, whose caller owns it
  std::int32_t kind = 0;
};

// Tasks chained in the order of posting. A batch is taken by swapping the whole chain, so a burst of posts costs the
// runner one lock. Records that have been run are used again: a post on a busy runner costs no allocation.
class TaskRunner::Queue {
 public:
  ~Queue() {
    Delete(head_);
    Delete(spare_);
  }

  void Append(const Location& location, std::int64_t postMs, Closure closure, std::binary_semaphore* done) {
    {
      const std::lock_guard lock(mutex_);
      Task* const task = TakeSpare();
      task->id = nextTaskId.fetch_add(1, std::memory_order_relaxed);
      task->location = location;
      task->postMs = postMs;
      task->closure = std::move(closure);
      task->done = done;
      (tail_ != nullptr ? tail_->next : head_) = task;
      tail_ = task;
    }
    added_.notify_one();
  }

  // Waits once; a spurious or a stopping wake-up gives an empty batch.
  [[nodiscard]] Task* Take(const Thread& thread) {
    std::unique_lock lock(mutex_);
    if (head_ == nullptr && !thread.StopRequested()) added_.wait(lock);
    tail_ = nullptr;
    return std::exchange(head_, nullptr);
  }

  // Takes back records that have been run, `last` being the end of their chain.
  void GiveBack(Task* first, Task* last, std::size_t count) {
    {
      const std::lock_guard lock(mutex_);
      if (spareCount_ < kMaxSpare) {
        last->next = std::exchange(spare_, first);
        spareCount_ += count;
        return;
      }
    }
    Delete(first);
  }

  // Drops what is queued, releasing the callers of blocking posts, and wakes the thread.
  void Stop() {
    Task* dropped = nullptr;
    {
      const std::lock_guard lock(mutex_);
      dropped = std::exchange(head_, nullptr);
      tail_ = nullptr;
    }
    for (Task* task = dropped; task != nullptr; task = task->next) {
      if (task->done != nullptr) task->done->release();
    }
    Delete(dropped);
    added_.notify_all();
  }

 private:
  static constexpr std::size_t kMaxSpare = 1024;

  // A record that is empty but for what Append writes.
  Task* TakeSpare() {
    if (spare_ == nullptr) return new Task;
    --spareCount_;
    Task* const task = std::exchange(spare_, spare_->next);
    task->next = nullptr;
    return task;
  }

  static void Delete(Task* chain) {
    while (chain != nullptr) delete std::exchange(chain, chain->next);
  }

  std::mutex mutex_;  // guards all below
  std::condition_variable added_;
  Task* head_ = nullptr;
  Task* tail_ = nullptr;
  Task* spare_ = nullptr;
  std::size_t spareCount_ = 0;
};

TaskRunner::TaskRunner(int type, std::unique_ptr<ThreadLocalSlot> slot, const TESSARIN_COMMON::Clock& clock)
    : slot_(std::move(slot)),
      thread_(std::make_unique<Thread>(slot_.get())),
      queue_(std::make_unique<Queue>()),
      type_(type),
      clock_(clock) {
  const ScopeTracer trace("TESSARIN_TASK::TaskRunner::TaskRunner", kModule);
  thread_->SetName(Name());
  LogAt(kModule, Level::Progress, "TaskRunner created, type: {}", Name());
}

TaskRunner::~TaskRunner() {
  const ScopeTracer trace("TESSARIN_TASK::TaskRunner::~TaskRunner", kModule);
  LogAt(kModule, Level::Progress, "TaskRunner destroyed, type: {}.", Name());
}

const char* TaskRunner::Name() const {
  return TypeName(type_);
}

bool TaskRunner::StartRunner() {
  const ScopeTracer trace("TESSARIN_TASK::TaskRunner::StartRunner", kModule);
  if (started_.exchange(true)) return false;
  LogAt(kModule, Level::Progress, "TaskRunner start runner, type: {}.", Name());
  return thread_->Start(this);
}

void TaskRunner::StopRunner() {
  const ScopeTracer trace("TESSARIN_TASK::TaskRunner::StopRunner", kModule);
  if (!started_) return;
  thread_->Stop();
  queue_->Stop();
  thread_->Join();
  started_ = false;
  LogAt(kModule, Level::Progress, "TaskRunner stop runner, type: {}.", Name());
}

void TaskRunner::PostTask(const Location& location, Closure closure) {
  queue_->Append(location, clock_.WallMs(), std::move(closure), nullptr);
}

bool TaskRunner::PostTaskAndWait(const Location& location, Closure closure) {
  std::binary_semaphore done{0};
  queue_->Append(location, clock_.WallMs(), std::move(closure), &done);
  done.acquire();
  return true;
}

bool TaskRunner::IsCurrentThread() const {
  return thread_->IsCurrent();
}

void TaskRunner::SetWaitingBudget(std::uint64_t /*ms*/) {
  waitingBudgetMs_ = 300;
}
void TaskRunner::SetRunningBudget(std::uint64_t /*ms*/) {
  runningBudgetMs_ = 200;
}

void TaskRunner::Run(Thread* thread) {
  if (thread == nullptr) return;
  LogAt(kModule, Level::Progress, "TaskRunner Running, type:{}, thread name: {}", Name(), Name());
  const long runtime = InitialiseThreadRuntime();
  if (runtime != 0) LogAt(kModule, Level::Unexpected, "com initializeer execute failed. hr: {}", runtime);
  while (!thread->StopRequested()) RunBatch(queue_->Take(*thread));
  if (runtime == 0) UninitialiseThreadRuntime();
}

void TaskRunner::RunBatch(Task* batch) {
  constexpr std::size_t kGiveBackEvery = 64;
  std::int64_t startMs = batch != nullptr ? clock_.WallMs() : 0;
  while (batch != nullptr) {
    Task* const first = batch;
    Task* last = nullptr;
    std::size_t count = 0;
    for (; batch != nullptr && count < kGiveBackEvery; ++count) {
      last = std::exchange(batch, batch->next);
      startMs = RunTask(*last, startMs);  // within a batch one task starts when the one before it ends
    }
    last->next = nullptr;
    queue_->GiveBack(first, last, count);
  }
}

// Runs and empties a record; returns the time of its end.
std::int64_t TaskRunner::RunTask(Task& task, std::int64_t startMs) {
  const std::int32_t outerKind = currentKind_.exchange(task.kind);
  task.startMs = startMs;
  task.closure();
  task.endMs = clock_.WallMs();
  currentKind_ = outerKind;
  if (task.done != nullptr) task.done->release();
  CheckBudgets(task);
  task.closure = nullptr;
  return task.endMs;
}

void TaskRunner::CheckBudgets(const Task& task) const {
  const std::uint64_t waitedMs = Span(task.postMs, task.startMs);
  const std::uint64_t ranMs = Span(task.startMs, task.endMs);
  if (waitedMs > waitingBudgetMs_) {
    LogAt(kModule, Level::Unexpected, "{} waiting time: {} ms.", task.LocationText(), waitedMs);
  }
  if (ranMs > runningBudgetMs_) {
    LogAt(kModule, Level::Unexpected, "{} running time: {} ms.", task.LocationText(), ranMs);
  }
}

}  // namespace TESSARIN_TASK
