#pragma once

#include <windows.h>

namespace TESSARIN_POWER {

// Looks a call up that the oldest systems lack; null without module or call.
template <class Call>
Call FindCall(HMODULE module, const char* name) {
  return module == nullptr ? nullptr : reinterpret_cast<Call>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Whether this is Windows 8 or later, asked of the system's kernel, which tells each program the same. A kernel that
// does not tell counts as late.
[[nodiscard]] bool IsWindows8OrLater();

}  // namespace TESSARIN_POWER
