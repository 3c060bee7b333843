#pragma once

#include <ravo/ravo.h>

#include <cstdint>

// Questions about any process by its id. Any thread may call.
namespace QX_MONITOR {

// Processor time and memory of a process; the status is -1, and the rest 0, if there is none or it may not be read.
[[nodiscard]] ProcessPerformance ReadProcessPerformance(std::uint32_t processId);

// False too for a process that has ended and is still held by somebody, and for one that may not be opened.
[[nodiscard]] bool ProcessExists(std::uint32_t processId);

}  // namespace QX_MONITOR
