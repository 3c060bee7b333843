#include "common/OwningHandle.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<int> closed;

struct Traits {
  using Type = int;
  static constexpr int None() { return -1; }
  static void Close(int handle) { closed.push_back(handle); }
};
using Handle = TESSARIN_COMMON::OwningHandle<Traits>;

TEST(OwningHandle, ClosesEachHandleOnceAndNeverTheEmptyOne) {
  closed.clear();
  {
    Handle none;
    EXPECT_FALSE(none);
    Handle first(1);
    Handle second(std::move(first));
    second.Reset(2);
    Handle third(3);
    third = std::move(second);
    EXPECT_EQ(third.Get(), 2);
    Handle released(4);
    EXPECT_EQ(released.Release(), 4);
  }
  EXPECT_EQ(closed, (std::vector<int>{1, 3, 2}));
}

}  // namespace
