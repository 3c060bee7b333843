#pragma once

#include <algorithm>
#include <chrono>
#include <thread>

namespace TESSARIN_TASK {

// For a thread that is about to sleep until the next piece of work comes. A stream of pieces comes faster than a sleep
// and a wake-up take: from another core, or from threads of this one that a yield lets run. Looking out for the next
// piece is worth it as long as some are found; looking in vain halves the looks of the next time, and from none at all
// there is a new attempt once in a while. It is not worth it where a yield gives the core away to somebody who
// computes: a sleeper gets it back with the wake-up, this thread only behind him. Then the next attempt is far off. Of
// one thread.
class LookAhead {
 public:
  // `found` tells whether work is there; false: sleep.
  template <class Found>
  bool operator()(Found found) {
    using Clock = std::chrono::steady_clock;
    if (looks_ == 0) {
      if (++rests_ < rest_) return false;
      rests_ = 0;
      looks_ = kFirstLooks;
    }
    auto before = Clock::now();
    for (int i = 0; i < looks_; ++i) {
      std::this_thread::yield();
      const bool isThere = found();
      const auto after = Clock::now();
      if (after - before > kMostYield) {
        looks_ = 0;
        rest_ = std::min(rest_ * 4, kMostRest);
        return isThere;
      }
      before = after;
      if (!isThere) continue;
      looks_ = std::min(looks_ * 2, kMostLooks);
      rest_ = kRest;
      return true;
    }
    looks_ /= 2;
    return false;
  }

 private:
  static constexpr std::chrono::microseconds kMostYield{500};  // less than others get the core for at a time
  static constexpr int kFirstLooks = 2;
  static constexpr int kMostLooks = 8;
  static constexpr int kRest = 64;
  static constexpr int kMostRest = 4096;

  int looks_ = 0;
  int rests_ = 0;     // since there were no looks
  int rest_ = kRest;  // so many until the next attempt
};

}  // namespace TESSARIN_TASK
