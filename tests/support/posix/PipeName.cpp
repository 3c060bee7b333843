#include "../PipeName.h"

#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>

namespace support {

std::string UniquePipeName() {
  static std::atomic<int> count{0};
  const auto name = "ravo_test_" + std::to_string(getpid()) + '_' + std::to_string(++count);
  return std::filesystem::temp_directory_path() / name;
}

std::pair<std::intptr_t, std::intptr_t> MakePipePair() {
  int ends[2] = {-1, -1};
  socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends);
  return {ends[0], ends[1]};
}

}  // namespace support
