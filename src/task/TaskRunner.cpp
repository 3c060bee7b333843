#include "TaskRunner.h"

#include <string>
#include <utility>

#include "TaskQueue.h"
#include "ThreadPlatform.h"
#include "log/LogInstance.h"
#include "log/ScopeTracer.h"

namespace TESSARIN_TASK {

namespace {

using TESSARIN_LOG::Level;
using TESSARIN_LOG::LogAt;
using TESSARIN_LOG::ScopeTracer;

constexpr const char* kModule = "TESSARIN_TASK";

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

TaskRunner::TaskRunner(int type, std::unique_ptr<ThreadLocalSlot> slot, const TESSARIN_COMMON::Clock& clock)
    : slot_(std::move(slot)),
      thread_(std::make_unique<Thread>(slot_.get())),
      queue_(std::make_unique<TaskQueue>()),
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
  queue_->Append(location, clock_.WallTickMs(), std::move(closure));
}

bool TaskRunner::PostTaskAndWait(const Location& location, Closure closure) {
  const auto done = std::make_shared<AutoResetEvent>();
  queue_->Append(location, clock_.WallTickMs(), std::move(closure), Task::Event(done));
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
  TaskBatch batch;
  while (!thread->StopRequested()) {
    queue_->Take(batch, *thread);
    RunBatch(batch);
  }
  if (runtime == 0) UninitialiseThreadRuntime();
}

void TaskRunner::RunBatch(TaskBatch& batch) {
  std::int64_t startMs = batch.Empty() ? 0 : clock_.WallTickMs();
  batch.Drain([&](Task& task) { startMs = RunTask(task, startMs); });  // one starts when the one before it ends
}

// Runs a task and destroys its closure; returns the time of its end.
std::int64_t TaskRunner::RunTask(Task& task, std::int64_t startMs) {
  const std::int32_t outerKind = currentKind_;
  SetCurrentKind(task.kind);
  task.closure();
  const std::int64_t endMs = clock_.WallTickMs();
  SetCurrentKind(outerKind);
  if (task.done != nullptr) task.done->Set();
  // Nearly no task passes one, so the texts are kept out of the way.
  if (Span(task.postMs, startMs) > waitingBudgetMs_ || Span(startMs, endMs) > runningBudgetMs_) [[unlikely]] {
    LogBudgets(task, startMs, endMs);
  }
  task.closure = nullptr;
  return endMs;
}

// Only the runner's thread writes it, and a store costs more than finding out that it is not needed.
void TaskRunner::SetCurrentKind(std::int32_t kind) {
  if (currentKind_ != kind) currentKind_ = kind;
}

void TaskRunner::LogBudgets(const Task& task, std::int64_t startMs, std::int64_t endMs) const {
  const std::uint64_t waitedMs = Span(task.postMs, startMs);
  const std::uint64_t ranMs = Span(startMs, endMs);
  if (waitedMs > waitingBudgetMs_) {
    LogAt(kModule, Level::Unexpected, "{} waiting time: {} ms.", task.LocationText(), waitedMs);
  }
  if (ranMs > runningBudgetMs_) {
    LogAt(kModule, Level::Unexpected, "{} running time: {} ms.", task.LocationText(), ranMs);
  }
}

}  // namespace TESSARIN_TASK
