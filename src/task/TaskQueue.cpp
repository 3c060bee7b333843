#include "TaskQueue.h"

#include <algorithm>
#include <utility>

#include "common/BriefLock.h"

namespace TESSARIN_TASK {

using TESSARIN_COMMON::BriefLock;

std::string Task::LocationText() const {
  constexpr std::size_t kMaxLocation = 255;
  return (std::string(location.function) + '@' + location.file).substr(0, kMaxLocation);
}

constexpr std::size_t kChunkTasks = 64;

void TaskBatch::Append(const Location& location, std::int64_t postMs, Task::Closure&& closure, Task::Event&& done) {
  static std::atomic<std::uint64_t> nextId{0};  // shared by all runners
  if (count_ % kChunkTasks == 0) BeginChunk();
  const std::uint64_t id = nextId.fetch_add(1, std::memory_order_relaxed);
  last_->emplace_back(id, location, postMs, std::move(closure), std::move(done));
  ++count_;
}

void TaskBatch::BeginChunk() {
  const std::size_t chunk = count_ / kChunkTasks;
  if (chunk == chunks_.size()) chunks_.emplace_back().reserve(kChunkTasks);
  last_ = &chunks_[chunk];
}

void TaskBatch::Drained() {
  constexpr std::size_t kKeptChunks = 256;
  constexpr std::size_t kSpareShare = 16;
  const std::size_t used = (count_ + kChunkTasks - 1) / kChunkTasks;
  count_ = 0;
  if (chunks_.size() <= kKeptChunks) return;
  const std::size_t spare = chunks_.size() - used;
  chunks_.resize(std::max(kKeptChunks, chunks_.size() - (spare + kSpareShare - 1) / kSpareShare));
}

void TaskBatch::Swap(TaskBatch& other) {
  chunks_.swap(other.chunks_);
  std::swap(count_, other.count_);
  std::swap(last_, other.last_);
}

void TaskQueue::Append(const Location& location, std::int64_t postMs, Task::Closure&& closure, Task::Event&& done) {
  bool wake = false;
  {
    const BriefLock lock(mutex_);
    tasks_.Append(location, postMs, std::move(closure), std::move(done));
    size_.store(tasks_.Size(), std::memory_order_relaxed);
    wake = std::exchange(sleeping_, false);
  }
  if (wake) wake_.Set();
}

void TaskQueue::Take(TaskBatch& batch, const Thread& thread) {
  const auto size = [this] { return size_.load(std::memory_order_relaxed); };
  if (size() == 0) lookAhead_(size);
  {
    const BriefLock lock(mutex_);
    tasks_.Swap(batch);
    size_.store(0, std::memory_order_relaxed);
    if (!batch.Empty() || thread.StopRequested()) return;
    sleeping_ = true;
  }
  wake_.Wait();
}

void TaskQueue::Stop() {
  TaskBatch dropped;
  {
    const BriefLock lock(mutex_);
    dropped.Swap(tasks_);
    sleeping_ = false;
  }
  dropped.Drain([](const Task& task) {
    if (task.done != nullptr) task.done->Set();
  });
  wake_.Set();
}

}  // namespace TESSARIN_TASK
