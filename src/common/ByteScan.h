#pragma once

#include <algorithm>
#include <cstddef>

namespace TESSARIN_COMMON {

namespace detail {
// Passes over blocks in which nothing matches.
template <std::ptrdiff_t kBlock, class Matches>
const char* SkipBlocks(const char* from, const char* end, Matches matches) {
  while (end - from >= kBlock) {
    unsigned char found = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
      found =
          static_cast<unsigned char>(found | static_cast<unsigned char>(matches(static_cast<unsigned char>(from[i]))));
    }
    if (found != 0) break;
    from += kBlock;
  }
  return from;
}
}  // namespace detail

// The first byte that matches, or `end`, in texts where few bytes do. `matches` is a lambda, which is expanded here,
// and tells it without a branch, so that the compiler looks at a block of bytes at once.
template <class Matches>
[[nodiscard]] const char* FindByte(const char* from, const char* end, Matches matches) {
  from = detail::SkipBlocks<64>(from, end, matches);
  from = detail::SkipBlocks<16>(from, end, matches);
  return std::find_if(from, end, [&](char c) { return matches(static_cast<unsigned char>(c)); });
}

}  // namespace TESSARIN_COMMON
