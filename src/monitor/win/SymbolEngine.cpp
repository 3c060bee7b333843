#include "../SymbolEngine.h"

#include <windows.h>

#include <dbghelp.h>

#include <array>
#include <cstdio>

#include "common/Platform.h"
#include "log/RustLogger.h"

namespace QX_MONITOR {

namespace {

using TESSARIN_LOG::RustLogger;

DWORD Native(std::uint64_t address) {
  return static_cast<DWORD>(address);
}

// The pattern takes an address and the system's error.
void TellDebugger(const char* pattern, std::uint64_t address) {
  std::array<char, 256> text{};
  std::snprintf(text.data(), text.size(), pattern, static_cast<unsigned>(address),
                static_cast<unsigned>(GetLastError()));
  OutputDebugStringA(text.data());
}

std::string FunctionAt(std::uint64_t address) {
  struct {
    IMAGEHLP_SYMBOL symbol;
    std::array<char, kMaxFunctionName + 1> name;
  } room{};
  room.symbol.SizeOfStruct = sizeof(IMAGEHLP_SYMBOL) + kMaxFunctionName + 1;
  room.symbol.MaxNameLength = kMaxFunctionName;
  DWORD displacement = 0;
  if (SymGetSymFromAddr(GetCurrentProcess(), Native(address), &displacement, &room.symbol) != FALSE) {
    return room.symbol.Name;
  }
  TellDebugger("dbg::stack_trace: Failed to resolve address 0x%X: %u\n", address);
  return kUnknownFunction;
}

}  // namespace

bool InitialiseSymbols() {
  if (SymInitialize(GetCurrentProcess(), nullptr, TRUE) != FALSE) return true;
  RustLogger::GetInstance().Error("SymInitialize error: " + std::to_string(TESSARIN_COMMON::LastSystemError()));
  return false;
}

bool CleanupSymbols() {
  return SymCleanup(GetCurrentProcess()) != FALSE;
}

std::string ModuleAt(std::uint64_t codeAddress) {
  const DWORD base = SymGetModuleBase(GetCurrentProcess(), Native(codeAddress));
  std::array<char, MAX_PATH> path{};
  const bool known = base != 0 && GetModuleFileNameA(reinterpret_cast<HMODULE>(base), path.data(), MAX_PATH) != 0;
  return known ? FileNameOfPath(path.data()) : kUnknownModule;
}

void ResolveSymbol(std::uint64_t codeAddress, StackFrame& frame) {
  frame.function = FunctionAt(codeAddress);
  IMAGEHLP_LINE line{};
  line.SizeOfStruct = sizeof line;
  DWORD displacement = 0;
  if (SymGetLineFromAddr(GetCurrentProcess(), Native(codeAddress), &displacement, &line) != FALSE) {
    frame.file = line.FileName;
    frame.line = static_cast<std::int32_t>(line.LineNumber);
  } else {
    TellDebugger("dbg::stack_trace: Failed to resolve line for 0x%X: %u\n", codeAddress);
  }
}

std::string AddressText(std::uint64_t address) {
  constexpr ULONG kMaxName = 2000;
  static const HANDLE process = [] {
    SymInitialize(GetCurrentProcess(), nullptr, TRUE);
    return GetCurrentProcess();
  }();
  struct {
    SYMBOL_INFO symbol;
    std::array<char, kMaxName> name;
  } room{};
  static_assert(sizeof(SYMBOL_INFO) == 88);
  room.symbol.SizeOfStruct = sizeof(SYMBOL_INFO);
  room.symbol.MaxNameLen = kMaxName;
  DWORD64 displacement = 0;
  if (SymFromAddr(process, address, &displacement, &room.symbol) == FALSE) return "";
  return std::string(room.symbol.Name) + "(" + std::to_string(address) + ")";
}

}  // namespace QX_MONITOR
