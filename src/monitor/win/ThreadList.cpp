#include "../ThreadList.h"

#include <windows.h>
// after windows.h
#include <tlhelp32.h>

#include <cstddef>

#include "Ticks.h"

namespace QX_MONITOR {

namespace {

struct SnapshotTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type snapshot) { CloseHandle(snapshot); }
};
using Snapshot = TESSARIN_COMMON::OwningHandle<SnapshotTraits>;

// An entry that ends before this does not tell its owner.
constexpr DWORD kShortestEntry = offsetof(THREADENTRY32, tpBasePri);

}  // namespace

std::vector<std::uint32_t> OwnThreads() {
  const Snapshot snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));  // of the whole machine
  std::vector<std::uint32_t> ids;
  THREADENTRY32 entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Thread32First(snapshot.Get(), &entry); more != 0; more = Thread32Next(snapshot.Get(), &entry)) {
    if (entry.dwSize >= kShortestEntry && entry.th32OwnerProcessID == GetCurrentProcessId()) {
      ids.push_back(entry.th32ThreadID);
    }
    entry.dwSize = sizeof(entry);
  }
  return ids;
}

ThreadTimes ReadThreadTimes(const ThreadHandle& thread) {
  FILETIME made{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  if (GetThreadTimes(reinterpret_cast<HANDLE>(thread.Get()), &made, &ended, &kernel, &user) == 0) return {};
  return {Ticks(user) * kNsPerTick, Ticks(kernel) * kNsPerTick};
}

}  // namespace QX_MONITOR
