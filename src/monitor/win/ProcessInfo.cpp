#include "../ProcessInfo.h"

#include <windows.h>
// after windows.h
#include <psapi.h>

#include "Ticks.h"
#include "common/OwningHandle.h"

namespace QX_MONITOR {

namespace {

constexpr DWORD kFullAccess = 0x1FFFFF;

struct ProcessTraits {
  using Type = HANDLE;
  static constexpr Type None() { return nullptr; }
  static void Close(Type process) { CloseHandle(process); }
};
using Process = TESSARIN_COMMON::OwningHandle<ProcessTraits>;

Process Open(std::uint32_t processId) {
  return Process(OpenProcess(kFullAccess, FALSE, processId));
}

std::uint64_t Processors() {
  static const std::uint64_t count = [] {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return info.dwNumberOfProcessors;
  }();
  return count;
}

// A process that has ended can be opened while somebody holds it.
bool Runs(const Process& process) {
  DWORD code = 0;
  return GetExitCodeProcess(process.Get(), &code) != 0 && code == STILL_ACTIVE;
}

}  // namespace

ProcessPerformance ReadProcessPerformance(std::uint32_t processId) {
  constexpr ProcessPerformance kFailed{-1, 0, 0};
  const Process process = Open(processId);
  if (!process || !Runs(process)) return kFailed;
  FILETIME made{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  if (GetProcessTimes(process.Get(), &made, &ended, &kernel, &user) == 0) return kFailed;
  PROCESS_MEMORY_COUNTERS memory{};
  if (K32GetProcessMemoryInfo(process.Get(), &memory, sizeof(memory)) == 0) return kFailed;
  return {0, (Ticks(kernel) + Ticks(user)) * kNsPerTick / Processors(), memory.WorkingSetSize};
}

bool ProcessExists(std::uint32_t processId) {
  const Process process = Open(processId);
  return process && Runs(process);
}

}  // namespace QX_MONITOR
