#include "SendQueue.h"

#include <algorithm>
#include <utility>

namespace TESSARIN_COMMON {

// The last block is filled up first: what is reserved stays close to what is queued, whatever the sizes are.
void SendQueue::Append(std::span<const char> head, std::span<const char> body) {
  const std::size_t size = head.size() + body.size();
  if (size == 0) return;
  const std::size_t room = blocks_.empty() ? 0 : blocks_.back().capacity() - blocks_.back().size();
  if (size > room) {
    std::vector<char> block;
    block.reserve(std::max(kBlockBytes, size - room));
    blocks_.push_back(std::move(block));
  }
  const std::size_t first = blocks_.size() - (size > room && room > 0 ? 2 : 1);
  for (std::span<const char> data : {head, body}) Fill(blocks_.back(), Fill(blocks_[first], data));
}

std::span<const char> SendQueue::Fill(std::vector<char>& block, std::span<const char> data) {
  const auto fitting = data.first(std::min(data.size(), block.capacity() - block.size()));
  block.insert(block.end(), fitting.begin(), fitting.end());
  bytes_ += fitting.size();
  return data.subspan(fitting.size());
}

std::span<const char> SendQueue::Front() const {
  return std::span<const char>(blocks_.front()).subspan(sent_);
}

void SendQueue::Pop(std::size_t count) {
  sent_ += count;
  bytes_ -= count;
  if (sent_ < blocks_.front().size()) return;
  blocks_.pop_front();
  sent_ = 0;
}

void SendQueue::Clear() {
  blocks_.clear();
  sent_ = 0;
  bytes_ = 0;
}

}  // namespace TESSARIN_COMMON
