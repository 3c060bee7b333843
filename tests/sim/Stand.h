#pragma once

#include <gtest/gtest.h>
#include <ravo/engine_abi.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sim/SimControl.h"

// The engine's other side: registers for what the tests look at and keeps what comes.
namespace stand {

constexpr int kBoundMs = 20000;

struct Frame {
  std::string userId;
  VideoFrameInfo info;
  std::vector<std::vector<std::uint8_t>> planes;  // as long as the stride says
  std::vector<std::int64_t> strides;
};

// Callbacks come as texts such as "OnUserJoin ann 0", numbers in decimal. They are kept for the life of the process;
// Clear forgets.
void Clear();
[[nodiscard]] std::vector<std::string> Events();
[[nodiscard]] int Count(const std::string& event);
[[nodiscard]] bool WaitFor(const std::string& event, int times = 1);
// Waits until a text with this beginning has come, and returns it; empty after the bound.
[[nodiscard]] std::string WaitForPrefix(const std::string& prefix);
// The frames of a user, of the last 200 frames that came.
[[nodiscard]] std::vector<Frame> Frames(const std::string& userId);
// Waits until that many frames of a user have come, or until one pleases; false after the bound.
[[nodiscard]] bool WaitForFrames(const std::string& userId, std::size_t count);
[[nodiscard]] bool WaitForFrame(const std::string& userId, const std::function<bool(const Frame&)>& pleases);

// An engine that was started in the right order. All tests of a process share it.
class Started : public testing::Test {
 protected:
  static void SetUpTestSuite();
  void TearDown() override { LeaveRoom(); }

  static void Join(const std::string& userId);
  // Subscribes to a stream's video and waits for the answer.
  static void Watch(const std::string& sid, std::int32_t width, std::int32_t height, std::int32_t frameRate);
};

// Registers the callbacks.
void Register();

}  // namespace stand
