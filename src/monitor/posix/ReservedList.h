#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace QX_MONITOR {

// A list whose memory is taken when it is made. The child that writes a dump fills such lists only: it is forked from
// a process of many threads, and the heap's locks may have been copied as taken.
template <class T>
class ReservedList {
 public:
  explicit ReservedList(std::size_t capacity) { items_.reserve(capacity); }

  // False, and nothing added, if there is no room.
  [[nodiscard]] bool Add(std::span<const T> items) {
    if (items_.capacity() - items_.size() < items.size()) return false;
    items_.insert(items_.end(), items.begin(), items.end());
    return true;
  }
  [[nodiscard]] bool Add(const T& item) { return Add(std::span(&item, 1)); }

  [[nodiscard]] std::span<T> Items() { return items_; }
  [[nodiscard]] std::span<const T> Items() const { return items_; }

 private:
  std::vector<T> items_;
};

}  // namespace QX_MONITOR
