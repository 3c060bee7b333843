#include "sim/Pacer.h"

#include <gtest/gtest.h>

namespace {

using sim::Pacer;
using namespace std::chrono_literals;

const Pacer::Clock::time_point kStart{100s};

TEST(Pacer, LateFramesDoNotPushTheLaterOnes) {
  Pacer pacer(30, kStart);
  for (int i = 0; i < 90; ++i) pacer.Advance(pacer.Due() + 20ms);
  EXPECT_EQ(pacer.Due(), kStart + 3s);
}

TEST(Pacer, WhoFallsFarBehindStartsAnew) {
  Pacer pacer(10, kStart);
  pacer.Advance(kStart + 5s);
  EXPECT_EQ(pacer.Due(), kStart + 5s);
  pacer.Advance(kStart + 5s);
  EXPECT_EQ(pacer.Due(), kStart + 5s + 100ms);
}

TEST(Pacer, NewRateHoldsFromTheComingFrame) {
  Pacer pacer(10, kStart);
  pacer.Advance(kStart);
  pacer.SetRate(50);
  EXPECT_EQ(pacer.Due(), kStart + 100ms);
  pacer.Advance(pacer.Due());
  EXPECT_EQ(pacer.Due(), kStart + 120ms);
}

}  // namespace
