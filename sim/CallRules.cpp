#include "CallRules.h"

#include <chrono>
#include <thread>

namespace sim {

CallRules& CallRules::Get() {
  static auto* const rules = new CallRules;
  return *rules;
}

void CallRules::SetDelay(const std::string& entry, std::int64_t milliseconds) {
  const std::lock_guard lock(mutex_);
  delaysMs_[entry] = milliseconds;
  any_ = true;
}

void CallRules::SetResult(const std::string& entry, std::optional<std::int64_t> result) {
  const std::lock_guard lock(mutex_);
  results_.erase(entry);
  if (result) results_.emplace(entry, *result);
  any_ = true;
}

void CallRules::Delay(std::string_view entry) const {
  if (const auto delayMs = Find(delaysMs_, entry)) std::this_thread::sleep_for(std::chrono::milliseconds(*delayMs));
}

std::optional<std::int64_t> CallRules::Result(std::string_view entry) const {
  return Find(results_, entry);
}

std::optional<std::int64_t> CallRules::Find(const Numbers& numbers, std::string_view entry) const {
  if (!any_) return std::nullopt;
  const std::lock_guard lock(mutex_);
  const auto found = numbers.find(entry);
  return found == numbers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace sim
