#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "LookAhead.h"
#include "TaskRunner.h"
#include "ThreadPlatform.h"

namespace TESSARIN_TASK {

struct Task {
  using Closure = TaskRunner::Closure;
  using Event = std::shared_ptr<AutoResetEvent>;

  Task(std::uint64_t taskId, const Location& place, std::int64_t nowMs, Closure&& work, Event&& event)
      : id(taskId), location(place), postMs(nowMs), closure(std::move(work)), done(std::move(event)) {}

  // "function@file", cut to what a line shows.
  [[nodiscard]] std::string LocationText() const;

  std::uint64_t id;
  Location location;
  std::int64_t postMs;  // wall clock
  Closure closure;
  Event done;  // of a blocking post, else null; its caller may be gone before the wake-up has ended
  std::int32_t kind = 0;
};

// Tasks in the order of posting, of one thread at a time. They lie in chunks that stay where they are while the batch
// grows, and that a drained batch keeps for its next tasks. Those of a burst go by and by: a stream that the runner
// cannot follow comes as bursts with lesser batches between them.
class TaskBatch {
 public:
  [[nodiscard]] bool Empty() const { return count_ == 0; }
  [[nodiscard]] std::size_t Size() const { return count_; }
  void Append(const Location& location, std::int64_t postMs, Task::Closure&& closure, Task::Event&& done);
  void Swap(TaskBatch& other);

  // Visits the tasks in order and destroys them, a chunk at a time: its tasks are still in the caches then.
  template <class Visit>
  void Drain(Visit visit) {
    for (auto& chunk : chunks_) {
      if (chunk.empty()) break;  // so are all that are kept behind it
      for (Task& task : chunk) visit(task);
      chunk.clear();
    }
    Drained();
  }

 private:
  void BeginChunk();
  void Drained();

  std::vector<std::vector<Task>> chunks_;
  std::vector<Task>* last_ = nullptr;  // takes the next task
  std::size_t count_ = 0;
};

// What is posted and not yet taken. The runner swaps the whole batch with the one that it has emptied, so a burst of
// posts costs it one lock, and a post on a busy runner no allocation. It sleeps on an event and not on a condition
// variable, whose waiter would come back through a contended mutex.
class TaskQueue {
 public:
  // Any thread.
  void Append(const Location& location, std::int64_t postMs, Task::Closure&& closure, Task::Event&& done = nullptr);
  // The runner. Swaps what is queued with `batch`, which is empty. Waits once; a stopping wake-up leaves it empty.
  void Take(TaskBatch& batch, const Thread& thread);
  // Drops what is queued, releasing the callers of blocking posts, and wakes the runner.
  void Stop();

 private:
  static constexpr std::size_t kCacheLineBytes = 64;

  std::mutex mutex_;  // guards the next two
  TaskBatch tasks_;
  bool sleeping_ = false;
  AutoResetEvent wake_;
  alignas(kCacheLineBytes) std::atomic<std::size_t> size_{0};  // of tasks_, for a look without the lock

  // The runner's.
  alignas(kCacheLineBytes) LookAhead lookAhead_;
};

}  // namespace TESSARIN_TASK
