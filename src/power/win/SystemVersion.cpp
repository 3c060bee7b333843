#include "SystemVersion.h"

namespace TESSARIN_POWER {

bool IsWindows8OrLater() {
  DWORD major = 10;
  DWORD minor = 0;
  DWORD build = 0;
  using Call = void(WINAPI*)(DWORD * major, DWORD * minor, DWORD * build);
  const auto getVersion = FindCall<Call>(GetModuleHandleW(L"ntdll.dll"), "RtlGetNtVersionNumbers");
  if (getVersion != nullptr) getVersion(&major, &minor, &build);
  return major >= 10 || (major >= 6 && minor >= 2);
}

}  // namespace TESSARIN_POWER
