#include "SendQueue.h"

#include <algorithm>

namespace TESSARIN_COMMON {

void SendQueue::Append(std::span<const char> data) {
  if (data.empty()) return;
  if (blocks_.empty() || blocks_.back().capacity() - blocks_.back().size() < data.size()) {
    blocks_.emplace_back().reserve(std::max(kBlockBytes, data.size()));
  }
  blocks_.back().insert(blocks_.back().end(), data.begin(), data.end());
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
