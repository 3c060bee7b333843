#include "../PipeName.h"

#include <windows.h>

#include <atomic>

namespace support {

std::string UniquePipeName() {
  static std::atomic<int> count{0};
  return R"(\\.\pipe\ravo_test_)" + std::to_string(GetCurrentProcessId()) + '_' + std::to_string(++count);
}

std::pair<std::intptr_t, std::intptr_t> MakePipePair() {
  constexpr DWORD kBufferBytes = 0x10000;
  const std::string name = UniquePipeName();
  const HANDLE server = CreateNamedPipeA(name.c_str(), FILE_FLAG_OVERLAPPED | PIPE_ACCESS_DUPLEX, 0, 1, kBufferBytes,
                                         kBufferBytes, 0, nullptr);
  const HANDLE client =
      CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
  return {reinterpret_cast<std::intptr_t>(server), reinterpret_cast<std::intptr_t>(client)};
}

}  // namespace support
