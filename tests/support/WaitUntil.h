#pragma once

#include <chrono>
#include <thread>

namespace support {

constexpr std::chrono::milliseconds kBound{60'000};  // for programs under an emulator on a busy machine

// Looks again and again until it is true; false after the bound.
template <class Condition>
bool WaitUntil(Condition isTrue) {
  const auto end = std::chrono::steady_clock::now() + kBound;
  while (!isTrue()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

}  // namespace support
