#include "sim/Pacer.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

TEST(Pacer, CatchesUpWithLateFramesButStartsAnewFarBehind) {
  const sim::Pacer::Clock::time_point start{100s};
  sim::Pacer pacer(30, start);
  for (int i = 0; i < 90; ++i) pacer.Advance(pacer.Due() + 20ms);
  EXPECT_EQ(pacer.Due(), start + 3s);
  pacer.SetRate(50);  // from the coming frame on
  EXPECT_EQ(pacer.Due(), start + 3s);
  pacer.Advance(start + 5s);
  EXPECT_EQ(pacer.Due(), start + 5s);
  pacer.Advance(start + 5s);
  EXPECT_EQ(pacer.Due(), start + 5s + 20ms);
}

}  // namespace
