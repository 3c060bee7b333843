#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <thread>

namespace TESSARIN_TASK {

// For a thread that is about to sleep until the next piece of work comes. A stream of pieces comes faster than a sleep
// and a wake-up take: from another core, or from threads of this one that a yield lets run. Looking out for the next
// piece is worth it as long as some are found; looking in vain halves the looks of the next time, and from none at all
// there is a new attempt once in a while. It is not worth it where a yield gives the core away to somebody who
// computes, other than what makes the pieces: a sleeper gets it back with the wake-up, this thread only behind him.
// Then the next attempt waits for some time, each time longer. Of one thread.
class LookAhead {
 public:
  // `found` tells how many pieces are there. False: sleep.
  template <class Found>
  bool operator()(Found found) {
    if (looks_ == 0) {
      if (++rests_ < kRests || Clock::now() < nextAttempt_) return false;
      looks_ = kFirstLooks;
    }
    auto before = Clock::now();
    for (int i = 0; i < looks_; ++i) {
      std::this_thread::yield();
      const std::size_t pieces = found();
      const auto after = Clock::now();
      if (after - before > kMostYield + pieces * kWakeUp) {
        looks_ = 0;
        rests_ = kRests;  // the time alone decides
        nextAttempt_ = after + pause_;
        pause_ = std::min(pause_ * 4, kMostPause);
        return pieces > 0;
      }
      before = after;
      if (pieces == 0) continue;
      looks_ = std::min(looks_ * 2, kMostLooks);
      pause_ = kPause;
      return true;
    }
    looks_ /= 2;
    rests_ = 0;
    return false;
  }

 private:
  using Clock = std::chrono::steady_clock;

  static constexpr std::chrono::microseconds kMostYield{500};  // less than others get the core for at a time
  static constexpr std::chrono::microseconds kWakeUp{5};       // what a piece saves by being found
  static constexpr std::chrono::milliseconds kPause{20};
  static constexpr std::chrono::milliseconds kMostPause{1280};
  static constexpr int kFirstLooks = 2;
  static constexpr int kMostLooks = 8;
  static constexpr int kRests = 64;

  int looks_ = 0;
  int rests_ = 0;  // since there were no looks
  std::chrono::milliseconds pause_ = kPause;
  Clock::time_point nextAttempt_{};
};

}  // namespace TESSARIN_TASK
