#pragma once

#include <chrono>
#include <cstdint>

namespace sim {

// Tells when each frame is due: the n-th frame at start + n / rate, so that late frames do not push the later ones. Who
// falls far behind starts anew instead of catching up in a burst. Plain value.
class Pacer {
 public:
  using Clock = std::chrono::steady_clock;

  Pacer(std::int64_t framesPerSecond, Clock::time_point start) : rate_(framesPerSecond), start_(start) {}

  [[nodiscard]] Clock::time_point Due() const {
    return start_ +
           std::chrono::nanoseconds(std::chrono::nanoseconds(std::chrono::seconds(1)).count() * count_ / rate_);
  }

  // One frame went out at `now`.
  void Advance(Clock::time_point now) {
    ++count_;
    if (now > Due() + kMaxLag) Restart(rate_, now);
  }

  // Changes the rate from the coming frame on.
  void SetRate(std::int64_t framesPerSecond) {
    if (framesPerSecond != rate_) Restart(framesPerSecond, Due());
  }

 private:
  static constexpr std::chrono::milliseconds kMaxLag{500};

  void Restart(std::int64_t rate, Clock::time_point start) {
    rate_ = rate;
    start_ = start;
    count_ = 0;
  }

  std::int64_t rate_;
  Clock::time_point start_;
  std::int64_t count_ = 0;
};

}  // namespace sim
