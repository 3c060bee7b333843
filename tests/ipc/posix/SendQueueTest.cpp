#include "ipc/posix/SendQueue.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using TESSARIN_COMMON::SendQueue;

// A peer that does not read is to cost the bytes that wait, and not a block for each small piece between large ones.
TEST(SendQueue, KeepsTheOrderAndOpensNoBlockWhileThereIsRoom) {
  constexpr std::size_t kBlockBytes = 64 << 10;
  SendQueue queue;
  std::string sent;
  for (int i = 0; i < 100; ++i) {
    for (const std::size_t size : {4, 70'000, 0}) {
      const std::string piece(size, static_cast<char>('a' + (i + size) % 26));
      queue.Append(piece);
      sent += piece;
    }
  }
  EXPECT_EQ(queue.Size(), sent.size());
  std::string taken;
  std::size_t blocks = 0;
  while (!queue.Empty()) {
    const auto front = queue.Front();
    taken.append(front.begin(), front.end());
    queue.Pop(front.size());
    ++blocks;
  }
  EXPECT_TRUE(taken == sent);
  EXPECT_LE(blocks, sent.size() / kBlockBytes + 1);
}

}  // namespace
