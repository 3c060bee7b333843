#pragma once

#include <fmt/format.h>

#include <utility>

#include "common/Singleton.h"

namespace TESSARIN_LOG {

enum class Level : int {
  Progress = 3,    // normal progress
  Unexpected = 4,  // survivable
  Failure = 5,
};

// Formats a line and hands it to the log library. Holds nothing; any thread may write, before the logger is made too.
// A line for which there is no memory goes out as its bare format: logging never ends the server.
class LogInstance : public TESSARIN_COMMON::Singleton<LogInstance> {
 public:
  template <class... Args>
  void Write(const char* module, Level level, fmt::format_string<Args...> format, Args&&... args) const {
    WriteFormatted(module, level, format, fmt::make_format_args(args...));
  }

 private:
  // One function for all lines: the places that log have only to pack their arguments.
  static void WriteFormatted(const char* module, Level level, fmt::string_view format, fmt::format_args args);
};

// A line of progress under the server's own module, as most lines are.
template <class... Args>
void Log(fmt::format_string<Args...> format, Args&&... args) {
  LogInstance::GetInstance().Write("Ravo", Level::Progress, format, std::forward<Args>(args)...);
}

template <class... Args>
void LogAt(const char* module, Level level, fmt::format_string<Args...> format, Args&&... args) {
  LogInstance::GetInstance().Write(module, level, format, std::forward<Args>(args)...);
}

}  // namespace TESSARIN_LOG
