#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "SymbolEngine.h"
#include "ThreadHandle.h"

// Takes the stacks of other threads of this process. The symbol engine must stand, or frames stay without names and, on
// Linux, there are none. The walking functions are called by one thread at a time.
//
// Windows: the thread is suspended, walked and resumed. Linux: the thread is interrupted by a signal only to copy its
// registers and a bounded piece of its stack, and runs on while the copy is unwound; so it may hold any lock. A thread
// that blocks the signal, or does not answer within a second, has no stack.
namespace QX_MONITOR {

// File names of modules without their folder, compared to the letter.
using StopModules = std::set<std::string, std::less<>>;

// What a walk starts from: the registers of a stopped thread on Windows; on Linux the copy taken of it.
struct ThreadContext;

// The frames from the innermost on. The frame at which the walk starts counts towards the maximum but is left out, so
// one less than the maximum comes at most; the walk ends before a frame of a stop module.
[[nodiscard]] std::vector<StackFrame> Walk(const ThreadHandle& thread, const ThreadContext& context,
                                           std::uint64_t maxFrames, const StopModules& stopModules);

// The same, each frame as "<module>---<file>---<function>".
[[nodiscard]] std::vector<std::string> FrameTexts(const ThreadHandle& thread, const ThreadContext& context,
                                                  std::uint64_t maxFrames, const StopModules& stopModules);

// Stops the thread, opened with full access, takes its frame texts and lets it go. Not for the calling thread.
[[nodiscard]] std::vector<std::string> SampleThread(const ThreadHandle& thread, std::uint64_t maxFrames,
                                                    const StopModules& stopModules);

// Opens and samples; empty for the calling thread, which cannot walk itself, and for one that does not exist.
[[nodiscard]] std::vector<std::string> SampleThreadById(std::uint64_t threadId, std::uint64_t maxFrames,
                                                        const StopModules& stopModules);

// Where a walk comes from; the two systems differ in it.
struct WalkedFrame {
  std::uint64_t address;
  std::uint64_t codeAddress;  // within the instruction that is under way: a call is looked up before its return address
};
class FrameSource {
 public:
  virtual ~FrameSource() = default;
  // False at the end.
  virtual bool Next(WalkedFrame& frame) = 0;
};

// The rules of Walk over a source.
[[nodiscard]] std::vector<StackFrame> CollectFrames(FrameSource& source, std::uint64_t maxFrames,
                                                    const StopModules& stopModules);

}  // namespace QX_MONITOR
