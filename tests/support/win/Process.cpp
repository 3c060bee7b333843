#include <windows.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "../ProcessCalls.h"
#include "common/Platform.h"
#include "common/win/Utf16.h"

namespace support::calls {
namespace {

void Check(bool good, const std::string& call) {
  if (good) return;
  throw std::runtime_error(call + ": " + TESSARIN_COMMON::SystemErrorText(TESSARIN_COMMON::LastSystemError()));
}

HANDLE Handle(std::intptr_t value) {
  return reinterpret_cast<HANDLE>(value);
}

struct Pipe {
  HANDLE read = nullptr;
  HANDLE write = nullptr;  // the child inherits this end alone
  Pipe() {
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    Check(CreatePipe(&read, &write, &inherited, 0) != 0, "CreatePipe");
    SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  }
};

// One argument as the programs' start-up code takes it apart: quoted, each backslash before a quote doubled.
std::string Quoted(const std::string& argument) {
  std::string text = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, '\\') + '"';
}

// The test is on the child's console for a moment, and goes on.
BOOL WINAPI IgnoreControl(DWORD) {
  return TRUE;
}

}  // namespace

const char* const kProgramEnding = ".exe";

Child Spawn(const std::string& program, const std::vector<std::string>& arguments) {
  std::string line = Quoted(program);
  for (const auto& argument : arguments) line += ' ' + Quoted(argument);
  std::wstring wideLine = TESSARIN_COMMON::Utf16FromUtf8(line);

  const Pipe out;
  const Pipe err;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = out.write;
  start.hStdError = err.write;
  PROCESS_INFORMATION made{};
  // With a console of its own, so that Ctrl-C reaches the child and nobody else.
  const bool good = CreateProcessW(nullptr, wideLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                                   &start, &made) != 0;
  const DWORD error = GetLastError();
  CloseHandle(out.write);
  CloseHandle(err.write);
  if (!good) {
    CloseHandle(out.read);
    CloseHandle(err.read);
    SetLastError(error);
  }
  Check(good, "CreateProcess " + program);
  CloseHandle(made.hThread);
  return {reinterpret_cast<std::intptr_t>(made.hProcess), reinterpret_cast<std::intptr_t>(out.read),
          reinterpret_cast<std::intptr_t>(err.read)};
}

std::optional<int> Wait(std::intptr_t process, std::chrono::milliseconds bound) {
  if (WaitForSingleObject(Handle(process), static_cast<DWORD>(bound.count())) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  Check(GetExitCodeProcess(Handle(process), &code) != 0, "GetExitCodeProcess");
  return static_cast<int>(code);
}

void Kill(std::intptr_t process) {
  TerminateProcess(Handle(process), 137);
}

void Interrupt(std::intptr_t process) {
  SetConsoleCtrlHandler(IgnoreControl, TRUE);
  FreeConsole();
  Check(AttachConsole(GetProcessId(Handle(process))) != 0, "AttachConsole");
  Check(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0, "GenerateConsoleCtrlEvent");
  FreeConsole();
}

void CloseProcess(std::intptr_t process) {
  CloseHandle(Handle(process));
}

std::size_t Read(std::intptr_t pipe, char* buffer, std::size_t size) {
  DWORD count = 0;
  if (ReadFile(Handle(pipe), buffer, static_cast<DWORD>(size), &count, nullptr) == 0 || count == 0) return 0;
  // Line ends become those of the tests' texts.
  const auto length = static_cast<std::size_t>(std::remove(buffer, buffer + count, '\r') - buffer);
  return length > 0 ? length : Read(pipe, buffer, size);
}

void ClosePipe(std::intptr_t pipe) {
  CloseHandle(Handle(pipe));
}

std::string OwnFolder() {
  std::array<char, 4096> path;
  const DWORD size = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  Check(size > 0, "GetModuleFileName");
  const std::string text(path.data(), size);
  return text.substr(0, text.rfind('\\'));
}

}  // namespace support::calls
