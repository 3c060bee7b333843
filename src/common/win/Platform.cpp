#include "../Platform.h"

#include <windows.h>

namespace TESSARIN_COMMON {

std::uint32_t CurrentProcessId() {
  return GetCurrentProcessId();
}

std::uint32_t CurrentThreadId() {
  return GetCurrentThreadId();
}

std::int64_t WallTickMs() {
  constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;  // in the system's 100 ns units since 1601
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  return ((std::int64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime) - kUnixEpoch) / 10'000;
}

int LastSystemError() {
  return static_cast<int>(GetLastError());
}

std::string SystemErrorText(int code) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  constexpr DWORD kEnglish = 1033;
  char* buffer = nullptr;  // the call allocates and stores its pointer here
  const DWORD length =
      FormatMessageA(kFlags, nullptr, static_cast<DWORD>(code), kEnglish, reinterpret_cast<char*>(&buffer), 0, nullptr);
  if (length == 0) return "";
  std::string text(buffer, length);
  LocalFree(buffer);
  text.erase(text.find_last_not_of(" \r\t\n") + 1);
  return text;
}

}  // namespace TESSARIN_COMMON
