#include "task/LookAhead.h"

#include <gtest/gtest.h>

namespace {

// The slices that others had the core for: those who make the pieces, and then a neighbour.
TEST(LookAheadTest, ALongYieldThatBringsLittleEndsTheLooksForSomeTime) {
  using Clock = std::chrono::steady_clock;
  TESSARIN_TASK::LookAhead lookAhead;
  int asked = 0;
  const auto look = [&](std::size_t pieces) {
    return lookAhead([&] {
      ++asked;
      std::this_thread::sleep_for(std::chrono::milliseconds(3));
      return pieces;
    });
  };
  while (!look(1'000'000)) {  // the first attempt is not at once
  }
  EXPECT_TRUE(look(1'000'000));
  EXPECT_TRUE(look(1));
  EXPECT_EQ(asked, 3);
  const auto ended = Clock::now();
  while (!look(1)) {
  }
  EXPECT_GT(Clock::now() - ended, std::chrono::milliseconds(15));
  EXPECT_EQ(asked, 4);
}

}  // namespace
