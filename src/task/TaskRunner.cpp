#include "TaskRunner.h"

#include <mutex>
#include <string>
#include <utility>
#include <vector>

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

  std::uint64_t id = 0;
  Location location;
  std::int64_t postMs = 0;  // wall clock, as the two below; 0 until then
  std::int64_t startMs = 0;
  std::int64_t endMs = 0;
  Closure closure;
  std::shared_ptr<AutoResetEvent> done;  // of a blocking post; its caller may be gone before the wake-up has ended
  std::int32_t kind = 0;
};

// Tasks in the order of posting. A batch is taken by swapping the whole list with the one that the runner has emptied,
// so a burst of posts costs the runner one lock, and a post on a busy runner no allocation. The runner sleeps on an
// event and not on a condition variable, whose waiter would come back through a contended mutex.
class TaskRunner::Queue {
 public:
  void Append(Task task) {
    bool wake = false;
    {
      const std::lock_guard lock(mutex_);
      tasks_.push_back(std::move(task));
      wake = std::exchange(sleeping_, false);
    }
    if (wake) wake_.Set();
  }

  // Swaps what is queued with `batch`, which is empty. Waits once; a stopping wake-up leaves the batch empty.
  void Take(std::vector<Task>& batch, const Thread& thread) {
    {
      const std::lock_guard lock(mutex_);
      tasks_.swap(batch);
      if (!batch.empty() || thread.StopRequested()) return;
      sleeping_ = true;
    }
    wake_.Wait();
  }

  // Drops what is queued, releasing the callers of blocking posts, and wakes the thread.
  void Stop() {
    std::vector<Task> dropped;
    {
      const std::lock_guard lock(mutex_);
      dropped.swap(tasks_);
      sleeping_ = false;
    }
    for (const Task& task : dropped) {
      if (task.done != nullptr) task.done->Set();
    }
    wake_.Set();
  }

 private:
  std::mutex mutex_;  // guards the list and the flag
  std::vector<Task> tasks_;
  bool sleeping_ = false;
  AutoResetEvent wake_;
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

TaskRunner::Task TaskRunner::MakeTask(const Location& location, Closure closure) const {
  Task task;
  task.id = nextTaskId.fetch_add(1, std::memory_order_relaxed);
  task.location = location;
  task.postMs = clock_.WallMs();
  task.closure = std::move(closure);
  return task;
}

void TaskRunner::PostTask(const Location& location, Closure closure) {
  queue_->Append(MakeTask(location, std::move(closure)));
}

bool TaskRunner::PostTaskAndWait(const Location& location, Closure closure) {
  const auto done = std::make_shared<AutoResetEvent>();
  Task task = MakeTask(location, std::move(closure));
  task.done = done;
  queue_->Append(std::move(task));
  done->Wait();
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
  std::vector<Task> batch;
  while (!thread->StopRequested()) {
    queue_->Take(batch, *thread);
    RunBatch(batch);
  }
  if (runtime == 0) UninitialiseThreadRuntime();
}

// Leaves the batch empty, with its memory for the next one unless a burst has blown it up.
void TaskRunner::RunBatch(std::vector<Task>& batch) {
  constexpr std::size_t kKeptTasks = 16384;
  std::int64_t startMs = batch.empty() ? 0 : clock_.WallMs();
  for (Task& task : batch) startMs = RunTask(task, startMs);  // one starts when the one before it ends
  if (batch.capacity() > kKeptTasks) batch = std::vector<Task>();
  batch.clear();
}

// Runs a task and destroys its closure; returns the time of its end.
std::int64_t TaskRunner::RunTask(Task& task, std::int64_t startMs) {
  const std::int32_t outerKind = currentKind_.exchange(task.kind);
  task.startMs = startMs;
  task.closure();
  task.endMs = clock_.WallMs();
  currentKind_ = outerKind;
  if (task.done != nullptr) task.done->Set();
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
