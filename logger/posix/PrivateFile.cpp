#include "../PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "common/posix/Descriptor.h"

namespace logger {

void MakePrivate(const std::filesystem::path& path) {
  // Not blocking: opening somebody's queue would wait for its reader.
  const TESSARIN_COMMON::Descriptor file(
      open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  if (!file) throw std::system_error(errno, std::generic_category(), "log file");
  struct stat status = {};
  const bool known = fstat(file.Get(), &status) == 0;
  if (!known || !S_ISREG(status.st_mode) || status.st_uid != geteuid() || status.st_nlink != 1) {
    throw std::system_error(EEXIST, std::generic_category(), "log file");
  }
}

}  // namespace logger
