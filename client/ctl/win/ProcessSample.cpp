#include "../ProcessSample.h"

#include <windows.h>
// after windows.h
#include <psapi.h>
#include <tlhelp32.h>

#include "common/OwningHandle.h"
#include "common/win/Utf16.h"

namespace ravo::ctl {
namespace {

struct HandleTraits {
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) {
    if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
  }
};
using Handle = TESSARIN_COMMON::OwningHandle<HandleTraits>;

using GetTimes = BOOL(WINAPI*)(HANDLE, FILETIME*, FILETIME*, FILETIME*, FILETIME*);

std::uint64_t CpuNs(HANDLE handle, GetTimes getTimes) {
  constexpr std::uint64_t kNsPerTick = 100;
  const auto ticks = [](const FILETIME& time) {
    return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
  };
  FILETIME made{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  return getTimes(handle, &made, &ended, &kernel, &user) ? (ticks(kernel) + ticks(user)) * kNsPerTick : 0;
}

// The file name of the program, without its folder.
std::string NameOf(HANDLE process) {
  wchar_t path[MAX_PATH];
  DWORD length = MAX_PATH;
  if (!QueryFullProcessImageNameW(process, 0, path, &length)) return "";
  const std::string whole = TESSARIN_COMMON::Utf8FromUtf16({path, length});
  return whole.substr(whole.find_last_of("\\/") + 1);
}

// Systems before Windows 10 keep no names.
std::string DescriptionOf(HANDLE thread) {
  using Call = HRESULT(WINAPI*)(HANDLE, PWSTR*);
  static const auto call = reinterpret_cast<Call>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetThreadDescription")));
  PWSTR text = nullptr;
  if (call == nullptr || FAILED(call(thread, &text))) return "";
  const std::string name = TESSARIN_COMMON::Utf8FromUtf16(text);
  LocalFree(text);
  return name;
}

std::vector<ThreadSample> ThreadsOf(std::uint32_t pid) {
  const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));  // of the whole machine
  std::vector<ThreadSample> threads;
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot.Get(), &entry); more; more = Thread32Next(snapshot.Get(), &entry)) {
    if (entry.th32OwnerProcessID != pid) continue;
    const Handle thread(OpenThread(THREAD_QUERY_INFORMATION, FALSE, entry.th32ThreadID));
    if (!thread) continue;
    threads.push_back({entry.th32ThreadID, DescriptionOf(thread.Get()), CpuNs(thread.Get(), GetThreadTimes)});
  }
  return threads;
}

}  // namespace

std::optional<ProcessSample> SampleProcess(std::uint32_t pid) {
  const Handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
  if (!process) return std::nullopt;
  PROCESS_MEMORY_COUNTERS memory{};
  K32GetProcessMemoryInfo(process.Get(), &memory, sizeof memory);
  return ProcessSample{NameOf(process.Get()), CpuNs(process.Get(), GetProcessTimes), memory.WorkingSetSize,
                       ThreadsOf(pid)};
}

}  // namespace ravo::ctl
