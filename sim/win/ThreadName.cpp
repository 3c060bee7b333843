#include "../ThreadName.h"

#include <windows.h>

#include <string>

namespace sim {

// Newer than Windows 7, so it is looked up by name.
void NameThread(const char* name) {
  using SetDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  const auto set =
      reinterpret_cast<SetDescription>(reinterpret_cast<void*>(GetProcAddress(kernel, "SetThreadDescription")));
  const std::string text(name);
  if (set != nullptr) set(GetCurrentThread(), std::wstring(text.begin(), text.end()).c_str());
}

}  // namespace sim
