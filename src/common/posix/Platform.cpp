#include "../Platform.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace TESSARIN_COMMON {

std::uint32_t CurrentProcessId() {
  return static_cast<std::uint32_t>(getpid());
}

std::uint32_t CurrentThreadId() {
  return static_cast<std::uint32_t>(syscall(SYS_gettid));
}

int LastSystemError() {
  return errno;
}

std::string SystemErrorText(int code) {
  const char* text = strerrordesc_np(code);  // English whatever the locale, and safe on any thread
  return text != nullptr ? text : "";
}

}  // namespace TESSARIN_COMMON
