#pragma once

#include <mutex>

namespace TESSARIN_COMMON {

// Holds a mutex that others hold for less time than a sleep and a wake-up take: who finds it taken looks again some
// times, ever less often, before it sleeps.
class BriefLock {
 public:
  explicit BriefLock(std::mutex& mutex) : mutex_(mutex) {
    constexpr int kMostPauses = 256;
    for (int pauses = 8; pauses <= kMostPauses; pauses *= 2) {
      if (mutex_.try_lock()) return;
      for (int i = 0; i < pauses; ++i) __builtin_ia32_pause();
    }
    mutex_.lock();
  }
  ~BriefLock() { mutex_.unlock(); }
  BriefLock(const BriefLock&) = delete;
  BriefLock& operator=(const BriefLock&) = delete;

 private:
  std::mutex& mutex_;
};

}  // namespace TESSARIN_COMMON
