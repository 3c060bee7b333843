#pragma once

#include <atomic>

#include "common/Clock.h"

namespace support {

// A clock that moves only when the test says so. Any thread may read it.
class FakeClock final : public TESSARIN_COMMON::Clock {
 public:
  [[nodiscard]] std::int64_t SteadyNs() const override { return steadyNs_; }
  [[nodiscard]] std::int64_t WallMs() const override { return wallMs_; }

  void AdvanceMs(std::int64_t ms) {
    steadyNs_ += ms * 1'000'000;
    wallMs_ += ms;
  }
  void StepWallMs(std::int64_t ms) { wallMs_ += ms; }

 private:
  std::atomic<std::int64_t> steadyNs_{1'000'000'000};
  std::atomic<std::int64_t> wallMs_{1'700'000'000'000};
};

}  // namespace support
