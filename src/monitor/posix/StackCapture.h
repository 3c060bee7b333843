#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "../StackSampler.h"

namespace QX_MONITOR {

// x86-64 by the numbers that DWARF gives the registers.
inline constexpr std::size_t kRegisterCount = 17;
inline constexpr std::size_t kStackPointer = 7;
inline constexpr std::size_t kProgramCounter = 16;
using Registers = std::array<std::uint64_t, kRegisterCount>;

// A thread at one moment: its registers, and what lay on its stack from the stack pointer on, 256 KiB at most.
struct ThreadContext {
  Registers registers{};
  std::vector<std::byte> stack;
};

// Asks a thread of this process for its context and waits for it, a second at most. False if it does not answer.
// Calls take turns. The thread is only interrupted for the copy; system calls that the kernel never takes up again
// after a signal (poll, epoll_wait) end early in it with EINTR.
[[nodiscard]] bool CaptureThread(std::uint32_t threadId, ThreadContext& context);

}  // namespace QX_MONITOR
