#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace sim {

// What tests ask of single entries: to be slow, or to answer with a given number and do nothing. Any thread may use it.
class CallRules {
 public:
  static CallRules& Get();

  void SetDelay(const std::string& entry, std::int64_t milliseconds);
  // Without a number the entry does its work again.
  void SetResult(const std::string& entry, std::optional<std::int64_t> result);

  // Sleeps for as long as the entry was asked to.
  void Delay(std::string_view entry) const;
  [[nodiscard]] std::optional<std::int64_t> Result(std::string_view entry) const;

 private:
  using Numbers = std::map<std::string, std::int64_t, std::less<>>;

  [[nodiscard]] std::optional<std::int64_t> Find(const Numbers& numbers, std::string_view entry) const;

  std::atomic<bool> any_{false};  // spares the lock while nothing was asked
  mutable std::mutex mutex_;
  // Guarded by mutex_.
  Numbers delaysMs_;
  Numbers results_;
};

}  // namespace sim
