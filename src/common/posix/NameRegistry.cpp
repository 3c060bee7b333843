#include "NameRegistry.h"

#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace TESSARIN_COMMON {
namespace {

void Unlink(NameRegistry::Kind kind, const std::string& name) {
  switch (kind) {
    case NameRegistry::Kind::Socket:
      unlink(name.c_str());
      break;
    case NameRegistry::Kind::Semaphore:
      sem_unlink(name.c_str());
      break;
    case NameRegistry::Kind::Segment:
    case NameRegistry::Kind::OwnerMark:
      shm_unlink(name.c_str());
      break;  // the mark lies beside the segments
  }
}

}  // namespace

NameRegistry::NameRegistry() : process_(getpid()) {
  std::atexit([] { GetInstance().End(); });
}

bool NameRegistry::Add(Kind kind, const std::string& name, const std::function<bool()>& make) {
  const std::lock_guard lock(mutex_);
  if (ending_) {
    errno = ECANCELED;
    return false;
  }
  if (!make()) return false;
  names_.emplace(kind, name);
  return true;
}

void NameRegistry::Remove(Kind kind, const std::string& name) {
  const std::lock_guard lock(mutex_);
  if (names_.erase({kind, name}) != 0) Unlink(kind, name);
}

void NameRegistry::End() {
  if (getpid() != process_) return;
  const std::lock_guard lock(mutex_);
  ending_ = true;
  for (const auto& [kind, name] : names_) Unlink(kind, name);
  names_.clear();
}

}  // namespace TESSARIN_COMMON
