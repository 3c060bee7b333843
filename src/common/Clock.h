#pragma once

#include <chrono>
#include <cstdint>

#include "Platform.h"

namespace TESSARIN_COMMON {

// The source of time of runners, timers and gates. The system's clock is used unless a test hands in its own.
// Any thread may ask.
class Clock {
 public:
  virtual ~Clock() = default;
  // Monotonic, nanoseconds from an arbitrary start.
  [[nodiscard]] virtual std::int64_t SteadyNs() const = 0;
  // Wall clock, milliseconds since 1970.
  [[nodiscard]] virtual std::int64_t WallMs() const = 0;

  // The same as of the system's last tick, for those who ask at every step.
  [[nodiscard]] virtual std::int64_t WallTickMs() const { return WallMs(); }

  [[nodiscard]] std::int64_t SteadyMs() const { return SteadyNs() / 1'000'000; }

  static const Clock& System();
};

namespace detail {
class SystemClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t SteadyNs() const override {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  [[nodiscard]] std::int64_t WallMs() const override {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }
  [[nodiscard]] std::int64_t WallTickMs() const override { return TESSARIN_COMMON::WallTickMs(); }
};
}  // namespace detail

inline const Clock& Clock::System() {
  static const auto* const clock = new detail::SystemClock;
  return *clock;
}

}  // namespace TESSARIN_COMMON
