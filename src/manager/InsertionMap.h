#pragma once

#include <iterator>
#include <list>
#include <string>
#include <string_view>
#include <utility>

#include "common/Fnv1a.h"

namespace TESSARIN_LUMARC {

// A table keyed by text that is walked in the order in which its keys first came. Overwriting a value keeps its place.
template <class T>
class InsertionMap {
 public:
  InsertionMap() = default;
  InsertionMap(InsertionMap&&) noexcept = default;
  InsertionMap& operator=(InsertionMap&&) noexcept = default;
  InsertionMap(const InsertionMap&) = delete;  // a copy's places would name the rows of the original
  InsertionMap& operator=(const InsertionMap&) = delete;

  using Rows = std::list<std::pair<std::string, T>>;

  [[nodiscard]] T* Find(std::string_view key) {
    const auto place = places_.find(key);
    return place == places_.end() ? nullptr : &place->second->second;
  }
  [[nodiscard]] bool Contains(std::string_view key) const { return places_.find(key) != places_.end(); }

  // The value of the key, made if it is missing.
  T& operator[](const std::string& key) {
    if (T* const value = Find(key)) return *value;
    rows_.emplace_back(key, T{});
    places_.emplace(key, std::prev(rows_.end()));
    return rows_.back().second;
  }

  void Erase(std::string_view key) {
    const auto place = places_.find(key);
    if (place == places_.end()) return;
    rows_.erase(place->second);
    places_.erase(place);
  }

  [[nodiscard]] std::size_t Size() const { return rows_.size(); }
  [[nodiscard]] auto begin() const { return rows_.begin(); }
  [[nodiscard]] auto end() const { return rows_.end(); }

 private:
  Rows rows_;
  TESSARIN_COMMON::StringMap<typename Rows::iterator> places_;
};

}  // namespace TESSARIN_LUMARC
