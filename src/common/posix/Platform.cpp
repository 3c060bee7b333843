#include "../Platform.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>

namespace TESSARIN_COMMON {

std::uint32_t CurrentProcessId() {
  return static_cast<std::uint32_t>(getpid());
}

std::uint32_t CurrentThreadId() {
  return static_cast<std::uint32_t>(syscall(SYS_gettid));
}

std::int64_t WallTickMs() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return std::int64_t{now.tv_sec} * 1000 + static_cast<std::uint32_t>(now.tv_nsec) / 1'000'000u;
}

int LastSystemError() {
  return errno;
}

std::string SystemErrorText(int code) {
  const char* text = strerrordesc_np(code);  // English whatever the locale, and safe on any thread
  return text != nullptr ? text : "";
}

}  // namespace TESSARIN_COMMON
