#include "../ThreadName.h"

#include <windows.h>

#include "common/win/Utf16.h"

namespace QX_MONITOR {

namespace {

using GetThreadDescriptionCall = HRESULT(WINAPI*)(HANDLE, PWSTR*);

GetThreadDescriptionCall FindGetThreadDescription() {
  const FARPROC call = GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetThreadDescription");
  return reinterpret_cast<GetThreadDescriptionCall>(reinterpret_cast<void*>(call));
}

}  // namespace

void ThreadHandleTraits::Close(Type thread) {
  CloseHandle(reinterpret_cast<HANDLE>(thread));
}

ThreadHandle OpenThreadById(std::uint32_t id, ThreadAccess access) {
  constexpr DWORD kFullAccess = 0x1FFFFF;
  const DWORD rights = access == ThreadAccess::Full ? kFullAccess : THREAD_QUERY_INFORMATION;
  return ThreadHandle(reinterpret_cast<std::uintptr_t>(OpenThread(rights, FALSE, id)));
}

std::string ThreadName(const ThreadHandle& thread, std::uint32_t id) {
  static const GetThreadDescriptionCall getDescription = FindGetThreadDescription();
  if (getDescription == nullptr) return "";
  PWSTR description = nullptr;
  // The text is left to the process: a few bytes for each named thread that is asked for. Wanted.
  if (FAILED(getDescription(reinterpret_cast<HANDLE>(thread.Get()), &description))) return "";
  const std::string name = TESSARIN_COMMON::Utf8FromUtf16(description);
  return name.empty() ? "" : name + "(" + std::to_string(id) + ")";
}

}  // namespace QX_MONITOR
