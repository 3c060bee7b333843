#include "../Files.h"

#include <windows.h>
// after windows.h
#include <shlwapi.h>

#include <ctime>
#include <cwchar>

#include "Ticks.h"
#include "common/OwningHandle.h"
#include "common/win/Utf16.h"

namespace QX_MONITOR {

namespace {

struct SearchTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type search) { FindClose(search); }
};
using Search = TESSARIN_COMMON::OwningHandle<SearchTraits>;

std::int64_t UnixSeconds(const FILETIME& time) {
  constexpr std::int64_t kTicksPerSecond = 10000000;
  constexpr std::int64_t k1970 = 11644473600;  // seconds from 1601, where the system's time begins
  return static_cast<std::int64_t>(Ticks(time)) / kTicksPerSecond - k1970;
}

bool Remove(const std::wstring& path);

bool RemoveContent(const std::wstring& directory) {
  WIN32_FIND_DATAW entry{};
  const Search search(FindFirstFileW((directory + L"\\*").c_str(), &entry));
  bool removed = true;
  for (bool more = static_cast<bool>(search); more; more = FindNextFileW(search.Get(), &entry) != 0) {
    const std::wstring name = entry.cFileName;
    if (name != L"." && name != L"..") removed &= Remove(directory + L'\\' + name);
  }
  return removed;
}

bool Remove(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return true;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return _wremove(path.c_str()) == 0;
  const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return (isLink || RemoveContent(path)) && RemoveDirectoryW(path.c_str()) != 0;
}

}  // namespace

std::vector<FileAge> ListFiles(const std::string& directory, const std::string& pattern) {
  const std::int64_t now = _time64(nullptr);
  std::vector<FileAge> files;
  WIN32_FIND_DATAA entry{};
  const Search search(FindFirstFileA((directory + pattern).c_str(), &entry));
  for (bool more = static_cast<bool>(search); more; more = FindNextFileA(search.Get(), &entry) != 0) {
    const bool isFile = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    if (isFile) files.push_back({entry.cFileName, now - UnixSeconds(entry.ftLastWriteTime)});
  }
  return files;
}

std::string RemovePath(const std::string& path) {
  const std::wstring wide = TESSARIN_COMMON::Utf16FromUtf8(path);
  return PathIsRelativeW(wide.c_str()) == 0 && Remove(wide) ? "" : "Remove File Failed";
}

std::string TempDirectory() {
  wchar_t path[MAX_PATH] = {};
  const DWORD length = GetTempPathW(MAX_PATH, path);
  return TESSARIN_COMMON::Utf8FromUtf16({path, length < MAX_PATH ? length : 0});
}

}  // namespace QX_MONITOR
