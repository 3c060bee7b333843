#pragma once

#include <algorithm>
#include <thread>

namespace TESSARIN_TASK {

// For a thread that is about to sleep until the next piece of work comes. A stream of pieces comes faster than a sleep
// and a wake-up take: from another core, or from threads of this one that a yield lets run. Looking out for the next
// piece is worth it as long as some are found; looking in vain halves the looks of the next time, and from none at all
// there is a new attempt once in a while. Of one thread.
class LookAhead {
 public:
  // `found` tells whether work is there; false: sleep.
  template <class Found>
  bool operator()(Found found) {
    constexpr int kFirstLooks = 2;
    constexpr int kMostLooks = 8;
    constexpr int kRests = 64;
    if (looks_ == 0) {
      if (++rests_ < kRests) return false;
      rests_ = 0;
      looks_ = kFirstLooks;
    }
    for (int i = 0; i < looks_; ++i) {
      std::this_thread::yield();
      if (!found()) continue;
      looks_ = std::min(looks_ * 2, kMostLooks);
      return true;
    }
    looks_ /= 2;
    return false;
  }

 private:
  int looks_ = 0;
  int rests_ = 0;
};

}  // namespace TESSARIN_TASK
