#pragma once

#include <gtest/gtest.h>
#include <ravo/engine_abi.h>

#include <cstdint>
#include <string>

#include "sim/SimControl.h"

// The engine's other side: registers for what the tests look at and keeps what comes.
namespace stand {

// Registers the callbacks. They come as texts such as "OnUserJoin ann 0", numbers in decimal, and are kept for the life
// of the process.
void Register();
// Of the texts with this beginning; an empty one counts all.
[[nodiscard]] int Count(const std::string& beginning);
// Waits until that many have come; false after the bound.
[[nodiscard]] bool WaitFor(const std::string& beginning, int times = 1);

// An engine that was started in the right order. All tests of a process share it.
class Started : public testing::Test {
 protected:
  static void SetUpTestSuite();
  void TearDown() override { LeaveRoom(); }

  // Joins a room where these participants are.
  static void Join(const std::string& participants = "");
  // Subscribes to a stream's video and waits for the answer.
  static void Watch(const std::string& sid, std::int32_t width, std::int32_t height, std::int32_t frameRate);
};

}  // namespace stand
