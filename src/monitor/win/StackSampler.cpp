#include "../StackSampler.h"

#include <windows.h>

#include <dbghelp.h>
#include <malloc.h>

#include <array>

namespace QX_MONITOR {

struct ThreadContext {
  CONTEXT registers;
};

namespace {

HANDLE Native(const ThreadHandle& thread) {
  return reinterpret_cast<HANDLE>(thread.Get());
}

ADDRESS Flat(DWORD offset) {
  return {.Offset = offset, .Segment = 0, .Mode = AddrModeFlat};
}

// The system's walk over one thread; it works on a copy of the registers.
class SystemWalk final : public FrameSource {
 public:
  SystemWalk(const ThreadHandle& thread, const ThreadContext& context)
      : thread_(Native(thread)), registers_(context.registers) {
    frame_.AddrPC = Flat(registers_.Eip);
    frame_.AddrStack = Flat(registers_.Esp);
    frame_.AddrFrame = Flat(registers_.Ebp);
  }

  bool Next(WalkedFrame& frame) override {
    const BOOL there = StackWalk(IMAGE_FILE_MACHINE_I386, GetCurrentProcess(), thread_, &frame_, &registers_, nullptr,
                                 nullptr, nullptr, nullptr);
    frame = {.address = frame_.AddrPC.Offset, .codeAddress = frame_.AddrPC.Offset};
    return there != FALSE;
  }

 private:
  const HANDLE thread_;
  CONTEXT registers_;
  STACKFRAME frame_{};
};

// The sampler allocates while the other thread stands still. So that thread must not stand in the heap's lock: the
// sampler holds it itself meanwhile, for the heap of the process and for that of the C runtime.
class HeapHold {
 public:
  HeapHold() {
    for (const HANDLE heap : heaps_) HeapLock(heap);
  }
  ~HeapHold() {
    for (const HANDLE heap : heaps_) HeapUnlock(heap);
  }
  HeapHold(const HeapHold&) = delete;
  HeapHold& operator=(const HeapHold&) = delete;

 private:
  const std::array<HANDLE, 2> heaps_{GetProcessHeap(), reinterpret_cast<HANDLE>(_get_heap_handle())};
};

// The other thread stands still while this lives, whatever ends it.
class Suspension {
 public:
  explicit Suspension(HANDLE thread) : thread_(thread) { SuspendThread(thread_); }
  ~Suspension() { ResumeThread(thread_); }
  Suspension(const Suspension&) = delete;
  Suspension& operator=(const Suspension&) = delete;

 private:
  const HANDLE thread_;
};

}  // namespace

std::vector<StackFrame> Walk(const ThreadHandle& thread, const ThreadContext& context, std::uint64_t maxFrames,
                             const StopModules& stopModules) {
  SystemWalk walk(thread, context);
  return CollectFrames(walk, maxFrames, stopModules);
}

// No step is tested: a walk from registers that could not be read yields little or nothing.
std::vector<std::string> SampleThread(const ThreadHandle& thread, std::uint64_t maxFrames,
                                      const StopModules& stopModules) {
  constexpr DWORD kControlIntegerSegments = 0x10007;
  const HeapHold heap;
  const Suspension suspension(Native(thread));
  ThreadContext context{};
  context.registers.ContextFlags = kControlIntegerSegments;
  GetThreadContext(Native(thread), &context.registers);
  return FrameTexts(thread, context, maxFrames, stopModules);
}

}  // namespace QX_MONITOR
