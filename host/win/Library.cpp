#include "../Library.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "common/Platform.h"
#include "common/win/Utf16.h"

namespace host {
namespace {

// The system wants its own separators and the whole path, when it is to search beside the library.
std::wstring FullPath(const std::string& path) {
  return std::filesystem::absolute(TESSARIN_COMMON::Utf16FromUtf8(path)).make_preferred().wstring();
}

}  // namespace

Library::Library(const std::string& path)
    : path_(path), module_(LoadLibraryExW(FullPath(path).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (module_ != nullptr) return;
  const int error = TESSARIN_COMMON::LastSystemError();
  throw std::runtime_error("cannot load the library " + path + ": " + TESSARIN_COMMON::SystemErrorText(error));
}

void* Library::Symbol(const char* name) const {
  const FARPROC symbol = GetProcAddress(static_cast<HMODULE>(module_), name);
  if (symbol == nullptr) throw std::runtime_error(path_ + " does not export " + name);
  return reinterpret_cast<void*>(symbol);
}

}  // namespace host
