#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Dumps and call stacks of a server that hangs, under names that tell when and where, and never more than a handful
// of them. For a monitor that watches for such threads; callers take turns. Directories may end in a separator or not;
// an empty one is the current. Names and directories are in the system's narrow encoding.
namespace QX_MONITOR {

inline constexpr const char* kDumpPrefix = "tessarin-";
inline constexpr const char* kDumpExtension = ".dmp";
inline constexpr const char* kCallStackSuffix = "-callstack.log";
inline constexpr std::size_t kDumpsKept = 20;

// The local time as "20260115093000".
[[nodiscard]] std::string TimeText();

// "tessarin-20260115093000-block-<a>(<b>)-<c>.dmp".
[[nodiscard]] std::string BlockDumpName(std::uint64_t a, std::uint64_t b, std::uint64_t c);

// Which module of the log a text names first in the order of the log's list: its place from 1, or 0 for none.
[[nodiscard]] int ModuleNumber(const std::string& text);

template <class T>
[[nodiscard]] std::pair<int, T> ClassifyByModule(const std::string& text, T value) {
  return {ModuleNumber(text), std::move(value)};
}

[[nodiscard]] bool Contains(const std::string& text, const std::string& part);

// See WriteProcessDump.
[[nodiscard]] bool WriteDump(const std::string& directory, const std::string& fileName);

// One stack a line, in a new file. False only if the file cannot be made.
[[nodiscard]] bool WriteCallStacks(const std::vector<std::string>& stacks, const std::string& directory,
                                   const std::string& fileName);

// Removes the oldest of the files that begin with the prefix, until twenty are left. Appends the names of those to
// `removed`, also of one that the system would not remove, and returns how many it then holds. A "*" in the prefix
// stands for any text; the prefix then is the whole pattern.
std::size_t Prune(const std::string& directory, std::vector<std::string>& removed,
                  const std::string& prefix = kDumpPrefix);

// A path in the folder for files of a moment: the time and the suffix, or the suffix alone. UTF-8.
[[nodiscard]] std::string TempFilePath(const std::string& suffix);
[[nodiscard]] std::string UntimedTempFilePath(const std::string& suffix);

}  // namespace QX_MONITOR
