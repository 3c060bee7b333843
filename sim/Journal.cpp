#include "Journal.h"

#include <cstdio>

#include "Utf8Path.h"
#include "common/RapidJson.h"

namespace sim {
namespace {

// Without a journal file the oldest lines are worth more than the newest: the start-up is what a reader asks for.
constexpr std::size_t kMaxKeptLines = 20000;

std::string ViolationLine(std::string_view text) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer writer(buffer);
  writer.StartObject();
  writer.Key("violation");
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  writer.EndObject();
  return buffer.GetString();
}

}  // namespace

Journal& Journal::Get() {
  static auto* const journal = new Journal;
  return *journal;
}

void Journal::Open(const std::string& path) {
  std::ofstream file(Utf8Path(path), std::ios::binary | std::ios::app);
  if (!file) return Violation("the journal " + path + " cannot be opened");
  const std::lock_guard lock(mutex_);
  file_ = std::move(file);
  for (const auto& line : kept_) file_ << line << '\n';
  file_.flush();
  kept_.clear();
}

void Journal::Call(std::string_view entry, std::string line) {
  {
    const std::lock_guard lock(mutex_);
    Append(line);
    auto found = tallies_.find(entry);
    if (found == tallies_.end()) found = tallies_.emplace(entry, Tally{}).first;
    ++found->second.count;
    found->second.lastLine = std::move(line);
  }
  called_.notify_all();
}

void Journal::Violation(std::string_view text) {
  std::fprintf(stderr, "simulated engine: %.*s\n", static_cast<int>(text.size()), text.data());
  const std::lock_guard lock(mutex_);
  ++violations_;
  Append(ViolationLine(text));
}

std::int64_t Journal::Count(std::string_view entry) const {
  const std::lock_guard lock(mutex_);
  return CountLocked(entry);
}

std::int64_t Journal::Violations() const {
  const std::lock_guard lock(mutex_);
  return violations_;
}

std::string Journal::LastLine(std::string_view entry) const {
  const std::lock_guard lock(mutex_);
  const auto found = tallies_.find(entry);
  return found == tallies_.end() ? "" : found->second.lastLine;
}

bool Journal::WaitFor(std::string_view entry, std::int64_t count, std::chrono::milliseconds bound) const {
  std::unique_lock lock(mutex_);
  return called_.wait_for(lock, bound, [&] { return CountLocked(entry) >= count; });
}

void Journal::Append(const std::string& line) {
  if (file_.is_open()) {
    (file_ << line << '\n').flush();
  } else if (kept_.size() < kMaxKeptLines) {
    kept_.push_back(line);
  }
}

std::int64_t Journal::CountLocked(std::string_view entry) const {
  const auto found = tallies_.find(entry);
  return found == tallies_.end() ? 0 : found->second.count;
}

}  // namespace sim
