#include "../ModuleLoader.h"

#include <windows.h>

#include "common/Platform.h"
#include "common/win/Utf16.h"

namespace TESSARIN_LUMARC {

void* LoadModule(const std::string& utf8Path, std::string& failure) {
  const std::wstring path = TESSARIN_COMMON::Utf16FromUtf8(utf8Path);
  const HMODULE module = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) {
    const int code = TESSARIN_COMMON::LastSystemError();
    failure = "LoadLibraryExW: " + std::to_string(code) + " " + TESSARIN_COMMON::SystemErrorText(code);
  }
  return module;
}

void* FindSymbol(void* module, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

}  // namespace TESSARIN_LUMARC
