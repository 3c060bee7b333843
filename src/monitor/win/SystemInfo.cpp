#include "../SystemInfo.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace QX_MONITOR {

namespace {

constexpr DWORD kFirmwareProvider = 0x52534D42;  // "RSMB"
constexpr std::size_t kFirmwareHeaderBytes = 8;
constexpr std::size_t kFirmwareLengthOffset = 4;

// By way of a double, as hosts have always had it: very long times lose their low bits.
std::uint64_t Ticks(const FILETIME& time) {
  constexpr double kHighUnit = 4294967296.0;
  return static_cast<std::uint64_t>(time.dwHighDateTime * kHighUnit + time.dwLowDateTime);
}

// The call that compatibility settings do not bend.
using VersionNumbersCall = void(WINAPI*)(DWORD* major, DWORD* minor, DWORD* build);

VersionNumbersCall FindVersionNumbers() {
  const HMODULE module = LoadLibraryW(L"ntdll.dll");
  return reinterpret_cast<VersionNumbersCall>(
      reinterpret_cast<void*>(GetProcAddress(module, "RtlGetNtVersionNumbers")));
}

// The firmware's structures without the header of the system's call.
std::vector<std::uint8_t> FirmwareStructures() {
  std::vector<std::uint8_t> bytes(GetSystemFirmwareTable(kFirmwareProvider, 0, nullptr, 0));
  const UINT got = GetSystemFirmwareTable(kFirmwareProvider, 0, bytes.data(), static_cast<DWORD>(bytes.size()));
  bytes.resize(std::min<std::size_t>(got, bytes.size()));
  if (bytes.size() < kFirmwareHeaderBytes) return {};
  std::uint32_t length = 0;
  std::memcpy(&length, &bytes[kFirmwareLengthOffset], sizeof(length));
  bytes.erase(bytes.begin(), bytes.begin() + kFirmwareHeaderBytes);
  bytes.resize(std::min<std::size_t>(length, bytes.size()));
  return bytes;
}

}  // namespace

SystemCpuTime ReadSystemCpuTime() {
  FILETIME idle{};
  FILETIME kernel{};
  FILETIME user{};
  if (GetSystemTimes(&idle, &kernel, &user) == 0) return {};
  return {Ticks(kernel) + Ticks(user), Ticks(idle), Ticks(kernel), Ticks(user)};
}

std::string OsVersion() {
  DWORD major = 0;
  DWORD minor = 0;
  DWORD build = 0;
  if (const VersionNumbersCall numbers = FindVersionNumbers()) numbers(&major, &minor, &build);
  constexpr DWORD kBuildNumber = 0xFFFF;  // flags stand above
  return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(build & kBuildNumber);
}

MachineNames ReadMachineNames() {
  return ParseFirmwareTable(FirmwareStructures());
}

}  // namespace QX_MONITOR
