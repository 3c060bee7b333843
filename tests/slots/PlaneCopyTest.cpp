#include "slots/PlaneCopy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

using TESSARIN_LUMARC::slots::CopyPlane;

// Each byte differs from those around it, so that none can be taken for another.
std::vector<std::uint8_t> Counted(std::size_t bytes, std::uint8_t first) {
  std::vector<std::uint8_t> made(bytes);
  std::iota(made.begin(), made.end(), first);
  return made;
}

TEST(PlaneCopy, CopiesAnySizeFromAndToAnyAddressAndNothingBeside) {
  constexpr std::size_t kMargin = 64;
  constexpr std::size_t kMost = 200;
  const auto from = Counted(kMargin + kMost, 1);
  const auto before = Counted(kMost + 3 * kMargin, 77);
  for (std::size_t bytes = 0; bytes <= kMost; ++bytes) {
    for (std::size_t target = kMargin; target < 2 * kMargin; ++target) {
      const std::size_t source = (bytes + target * 7) % kMargin;
      auto expected = before;
      std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(source), bytes,
                  expected.begin() + static_cast<std::ptrdiff_t>(target));
      auto to = before;
      CopyPlane(to.data() + target, from.data() + source, bytes);
      ASSERT_EQ(to, expected) << bytes << " bytes to " << target;
    }
  }
}

}  // namespace
