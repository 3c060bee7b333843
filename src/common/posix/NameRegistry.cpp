#include "NameRegistry.h"

#include <semaphore.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <new>

namespace TESSARIN_COMMON {
namespace {

bool Unlink(NameRegistry::Kind kind, const std::string& name) {
  switch (kind) {
    case NameRegistry::Kind::Socket:
      return unlink(name.c_str()) == 0;
    case NameRegistry::Kind::Semaphore:
      return sem_unlink(name.c_str()) == 0;
    case NameRegistry::Kind::Segment:
    case NameRegistry::Kind::OwnerMark:
      break;  // the mark lies beside the segments
  }
  return shm_unlink(name.c_str()) == 0;
}

}  // namespace

NameRegistry::NameRegistry() : process_(getpid()) {
  std::atexit([] { GetInstance().End(); });
}

// The entry comes first: an object whose name could not be kept would stay for ever.
bool NameRegistry::Add(Kind kind, const std::string& name, const std::function<bool()>& make) try {
  const std::lock_guard lock(mutex_);
  if (ending_) {
    errno = ECANCELED;
    return false;
  }
  const auto [entry, isNew] = names_.insert({kind, name});
  if (make()) return true;
  const int error = errno;
  if (isNew) names_.erase(entry);
  errno = error;
  return false;
} catch (const std::bad_alloc&) {
  errno = ENOMEM;
  return false;
}

void NameRegistry::Remove(Kind kind, const std::string& name) noexcept {
  const std::lock_guard lock(mutex_);
  const auto entry = names_.find(EntryView{kind, name});
  if (entry == names_.end()) return;
  const bool gone = Unlink(kind, name) || errno == ENOENT;
  // Tried again at the end, but for a socket's file: by then it may be another server's.
  if (gone || kind == Kind::Socket) names_.erase(entry);
}

void NameRegistry::End() {
  if (getpid() != process_) return;
  const std::lock_guard lock(mutex_);
  ending_ = true;
  for (const auto& [kind, name] : names_) Unlink(kind, name);
  names_.clear();
}

}  // namespace TESSARIN_COMMON
