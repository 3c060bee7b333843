#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace QX_MONITOR {

// What a `stat` file below /proc tells of a process or a thread.
struct ProcStat {
  char state = '?';
  std::uint64_t userTicks = 0;  // of the system's clock, see NsFromTicks
  std::uint64_t kernelTicks = 0;
};

// None if the file cannot be read, as when the process has ended.
[[nodiscard]] std::optional<ProcStat> ReadProcStat(const std::string& path);

[[nodiscard]] std::uint64_t NsFromTicks(std::uint64_t ticks);

}  // namespace QX_MONITOR
