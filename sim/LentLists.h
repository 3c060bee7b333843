#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Journal.h"

namespace sim {

// The lists that were handed out and have to come back through the partner entry. Any thread may use it.
template <class T>
class LentLists {
 public:
  explicit LentLists(std::string name) : name_(std::move(name)) {}

  // Hands out a copy; null for an empty list.
  T* Lend(const std::vector<T>& rows) {
    if (rows.empty()) return nullptr;
    auto copy = std::make_unique<std::vector<T>>(rows);
    T* const first = copy->data();
    const std::lock_guard lock(mutex_);
    lent_.emplace(first, std::move(copy));
    return first;
  }

  // Takes a list back. One that was not lent, or has another length now, is a violation.
  void TakeBack(T* first, std::int32_t count) {
    if (first == nullptr && count == 0) return;
    const std::lock_guard lock(mutex_);
    const auto found = lent_.find(first);
    if (found == lent_.end()) return Journal::Get().Violation("a list of " + name_ + " was given back that is not out");
    if (found->second->size() != static_cast<std::size_t>(count)) {
      Journal::Get().Violation("a list of " + name_ + " was given back with another length");
    }
    lent_.erase(found);
  }

  // At the end: what is still out is a violation.
  void ReportLosses() const {
    const std::lock_guard lock(mutex_);
    if (!lent_.empty()) {
      Journal::Get().Violation(std::to_string(lent_.size()) + " lists of " + name_ + " were never given back");
    }
  }

 private:
  const std::string name_;
  mutable std::mutex mutex_;
  std::map<T*, std::unique_ptr<std::vector<T>>> lent_;  // guarded by mutex_
};

}  // namespace sim
