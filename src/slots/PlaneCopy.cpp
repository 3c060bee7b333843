#include "PlaneCopy.h"

#include <emmintrin.h>

#include <cstring>

namespace TESSARIN_LUMARC::slots {
namespace {

constexpr std::size_t kLineBytes = 64;  // of a cache

}  // namespace

// Every processor that Ravo runs on has SSE2; the 32-bit compiler has to be told. The first and the last line are not
// aligned and are in part copied twice.
[[gnu::target("sse2")]] void CopyPlane(std::uint8_t* to, const std::uint8_t* from, std::size_t bytes) {
  if (bytes < kLineBytes) {
    std::memcpy(to, from, bytes);
    return;
  }
  std::memcpy(to, from, kLineBytes);
  std::size_t done = kLineBytes - reinterpret_cast<std::uintptr_t>(to) % kLineBytes;
  for (; bytes - done >= kLineBytes; done += kLineBytes) {
    const auto* const source = reinterpret_cast<const __m128i*>(from + done);
    auto* const line = reinterpret_cast<__m128i*>(to + done);
    // All loads come first: one behind a store to an address with the same low bits would wait for it.
    const __m128i a = _mm_loadu_si128(source);
    const __m128i b = _mm_loadu_si128(source + 1);
    const __m128i c = _mm_loadu_si128(source + 2);
    const __m128i d = _mm_loadu_si128(source + 3);
    _mm_store_si128(line, a);
    _mm_store_si128(line + 1, b);
    _mm_store_si128(line + 2, c);
    _mm_store_si128(line + 3, d);
  }
  std::memcpy(to + bytes - kLineBytes, from + bytes - kLineBytes, kLineBytes);
}

}  // namespace TESSARIN_LUMARC::slots
