#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ThreadHandle.h"

// The threads of this process. Any thread may call.
namespace QX_MONITOR {

struct ThreadTimes {
  std::uint64_t userNs = 0;
  std::uint64_t kernelNs = 0;
};

// The ids in the system's order. A thread may have ended by the time that its id is used.
[[nodiscard]] std::vector<std::uint32_t> OwnThreads();

// All 0 for a thread that cannot be read. Linux counts in steps of its clock tick, 10 ms.
[[nodiscard]] ThreadTimes ReadThreadTimes(const ThreadHandle& thread);

// What lists show of a thread: its name as ThreadName gives it, or "thread <id>" where that is empty.
[[nodiscard]] std::string ShownName(const std::string& name, std::uint32_t id);

}  // namespace QX_MONITOR
