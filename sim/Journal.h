#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

// The record of what the engine was asked: one JSON line a call, in the order of the calls. Lines are kept until the
// file is known and are then written in front. Any thread may use it; the lock is held for one line.
class Journal {
 public:
  static Journal& Get();

  // Appends to the file from here on; a second call with another path changes the file. A file that cannot be opened is
  // a violation. The path is UTF-8.
  void Open(const std::string& path);

  // Takes one call: its name and its line without the line end.
  void Call(std::string_view entry, std::string line);
  // Takes a breach of the engine's rules: {"violation": text} in the journal and a line on standard error.
  void Violation(std::string_view text);

  [[nodiscard]] std::int64_t Count(std::string_view entry) const;
  [[nodiscard]] std::int64_t Violations() const;
  // The line of the last call of an entry; empty if there was none.
  [[nodiscard]] std::string LastLine(std::string_view entry) const;
  // Waits until an entry was called `count` times in all; false after the bound.
  bool WaitFor(std::string_view entry, std::int64_t count, std::chrono::milliseconds bound) const;

 private:
  struct Tally {
    std::int64_t count = 0;
    std::string lastLine;
  };

  Journal() = default;
  void Append(const std::string& line);
  [[nodiscard]] std::int64_t CountLocked(std::string_view entry) const;

  mutable std::mutex mutex_;
  mutable std::condition_variable called_;
  // Guarded by mutex_.
  std::ofstream file_;
  std::vector<std::string> kept_;  // while there is no file
  std::map<std::string, Tally, std::less<>> tallies_;
  std::int64_t violations_ = 0;
};

}  // namespace sim
