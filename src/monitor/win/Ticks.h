#pragma once

#include <windows.h>

#include <cstdint>

namespace QX_MONITOR {

inline constexpr std::uint64_t kNsPerTick = 100;

// The system's 64-bit count of 100 ns, which it hands out in halves.
inline std::uint64_t Ticks(const FILETIME& time) {
  return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
}

}  // namespace QX_MONITOR
