#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace support {

// The standard library's own misses wake-ups where the system has no wait on an address.
class Semaphore {
 public:
  void release() {
    const std::lock_guard lock(mutex_);
    ++count_;
    released_.notify_one();
  }
  // Throws where nothing comes in a minute.
  void acquire() {
    if (!try_acquire(std::chrono::minutes(1))) throw std::runtime_error("nobody has released the semaphore");
  }
  bool try_acquire(std::chrono::milliseconds bound = {}) {
    std::unique_lock lock(mutex_);
    if (!released_.wait_for(lock, bound, [this] { return count_ > 0; })) return false;
    --count_;
    return true;
  }

 private:
  std::mutex mutex_;  // guards the count
  std::condition_variable released_;
  int count_ = 0;
};

}  // namespace support
