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
  for (int i = 0; i < 300; ++i) {
    const std::string piece(i % 3 == 0 ? 4 : i % 3 == 1 ? 70'000 : 0, static_cast<char>('a' + i % 26));
    queue.Append(std::span(piece).first(piece.size() / 3), std::span(piece).subspan(piece.size() / 3));
    sent += piece;
  }
  std::string taken;
  std::size_t blocks = 0;
  for (; !queue.Empty(); ++blocks) {
    const auto front = queue.Front();
    taken.append(front.begin(), front.end());
    queue.Pop(front.size());
  }
  EXPECT_TRUE(taken == sent);
  EXPECT_LE(blocks, sent.size() / kBlockBytes + 1);
}

}  // namespace
