#pragma once

#include <spdlog/details/log_msg_buffer.h>
#include <spdlog/sinks/sink.h>

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace logger {

struct Settings {
  std::int32_t version = 0;
  std::string folder;  // empty for standard error
  std::string name;
  std::string stem;  // of the file names
  int keepRuns = 0;
  bool flushSoon = true;
};

// The one logger of the process. Any thread writes, from before the logger is made until after exit has begun. A file
// line costs its formatting and a copy into the stream's buffer. The buffer reaches the system at once after a line of
// level 4 or more, within a second otherwise, and when the process exits; a thread sleeps for that and wakes only
// after lines have come.
class Logger {
 public:
  static Logger& Get();

  // False if the logger is made already. Fails with a std::exception if the files cannot be used; lines then go to
  // standard error.
  bool Create(const Settings& settings);
  void Write(const char* module, int level, const char* text);
  // At exit: what is buffered goes out, and later lines of other threads one by one.
  void FlushForGood();

 private:
  Logger();

  void OpenFile(const Settings& settings);
  void KeepEarly(const spdlog::details::log_msg& line);
  void FlushAfter(spdlog::level::level_enum level);
  void StartFlusher();
  void RunFlusher();
  void TryFlush();

  std::mutex mutex_;  // guards all that follows
  const std::unique_ptr<spdlog::sinks::sink> console_;
  std::unique_ptr<char[]> fileBuffer_;  // of the file that is open
  std::unique_ptr<spdlog::sinks::sink> file_;
  bool made_ = false;
  std::vector<spdlog::details::log_msg_buffer> early_;
  std::size_t earlyBytes_ = 0;
  bool flushEach_ = false;
  bool flusherRuns_ = false;
  bool unflushed_ = false;
  std::condition_variable written_;
};

}  // namespace logger
