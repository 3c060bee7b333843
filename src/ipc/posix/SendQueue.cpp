#include "SendQueue.h"

#include <algorithm>
#include <utility>

namespace TESSARIN_COMMON {

// The last block is filled up first: what is reserved stays close to what is queued, whatever the sizes are.
void SendQueue::Append(std::span<const char> data) {
  if (!blocks_.empty()) {
    auto& last = blocks_.back();
    const auto fitting = data.first(std::min(data.size(), last.capacity() - last.size()));
    last.insert(last.end(), fitting.begin(), fitting.end());
    bytes_ += fitting.size();
    data = data.subspan(fitting.size());
  }
  if (data.empty()) return;
  std::vector<char> block;
  block.reserve(std::max(kBlockBytes, data.size()));
  block.assign(data.begin(), data.end());
  blocks_.push_back(std::move(block));
  bytes_ += data.size();
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
