#pragma once

#include <atomic>
#include <cstdint>

#include "common/Clock.h"

namespace TESSARIN_LOG {

// Thins out the lines of hot paths: answers yes once a period, and at the first call. Any thread may ask.
class IntervalGate {
 public:
  explicit IntervalGate(std::int64_t periodMs = 5000,
                        const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System())
      : periodMs_(periodMs), clock_(clock) {}

  [[nodiscard]] bool IsTime() {
    const std::int64_t now = clock_.WallTickMs();
    std::int64_t last = lastMs_.load(std::memory_order_relaxed);
    return now - last >= periodMs_ && lastMs_.compare_exchange_strong(last, now, std::memory_order_relaxed);
  }

 private:
  const std::int64_t periodMs_;
  const TESSARIN_COMMON::Clock& clock_;
  std::atomic<std::int64_t> lastMs_{0};
};

}  // namespace TESSARIN_LOG
