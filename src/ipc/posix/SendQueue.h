#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <vector>

namespace TESSARIN_COMMON {

// Bytes that the socket did not take, in order. Small ones share a block.
class SendQueue {
 public:
  [[nodiscard]] bool Empty() const { return bytes_ == 0; }
  [[nodiscard]] std::size_t Size() const { return bytes_; }

  // Both, or without memory none of them.
  void Append(std::span<const char> head, std::span<const char> body);
  // The next bytes in one piece; not for an empty queue.
  [[nodiscard]] std::span<const char> Front() const;
  // Drops bytes of the front piece.
  void Pop(std::size_t count);
  void Clear();

 private:
  static constexpr std::size_t kBlockBytes = std::size_t{64} << 10;

  // As much as fits into the block; gives the rest.
  std::span<const char> Fill(std::vector<char>& block, std::span<const char> data);

  std::deque<std::vector<char>> blocks_;  // none is grown beyond its first capacity
  std::size_t sent_ = 0;                  // of the first block
  std::size_t bytes_ = 0;
};

}  // namespace TESSARIN_COMMON
