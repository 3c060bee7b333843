#pragma once

#include <condition_variable>
#include <mutex>

namespace support {

// The standard library's own misses wake-ups where the system has no wait on an address.
class Semaphore {
 public:
  void release() {
    const std::lock_guard lock(mutex_);
    ++count_;
    released_.notify_one();
  }
  void acquire() {
    std::unique_lock lock(mutex_);
    released_.wait(lock, [this] { return count_ > 0; });
    --count_;
  }
  bool try_acquire() {
    const std::lock_guard lock(mutex_);
    if (count_ == 0) return false;
    --count_;
    return true;
  }

 private:
  std::mutex mutex_;  // guards the count
  std::condition_variable released_;
  int count_ = 0;
};

}  // namespace support
