#include "../Program.h"

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <cstdlib>
#include <thread>

#include "common/win/Utf16.h"

namespace host {
namespace {

HANDLE interrupted = nullptr;  // counts the requests to stop

BOOL WINAPI HandleControl(DWORD event) {
  ReleaseSemaphore(interrupted, 1, nullptr);
  // Once this returns for a closed console or a log-off the system ends the process: leave the time to the stop.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

std::string Utf8(const std::wstring& wide) {
  const int size = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
  return text;
}

}  // namespace

const char* const kRavoFile = "ravo.dll";
const char* const kEngineFile = "\\tessarin-lumarc.dll";

// Not argv: it is in the code page of the system, and its wildcards are expanded.
std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  LPWSTR* const list = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Utf8(list[i]));
  LocalFree(list);
  return arguments;
}

std::string ProgramFolder() {
  std::array<wchar_t, 4096> path;
  const DWORD size = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::string text = Utf8({path.data(), size});
  return text.substr(0, text.rfind('\\'));
}

void OnInterrupt(std::function<void()> stop) {
  interrupted = CreateSemaphoreW(nullptr, 0, 100, nullptr);
  SetConsoleCtrlHandler(HandleControl, TRUE);
  std::thread([stop = std::move(stop)] {
    WaitForSingleObject(interrupted, INFINITE);
    stop();
    WaitForSingleObject(interrupted, INFINITE);
    std::_Exit(130);
  }).detach();
}

}  // namespace host
