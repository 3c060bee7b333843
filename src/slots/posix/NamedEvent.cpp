#include "../NamedEvent.h"

#include <fcntl.h>
#include <semaphore.h>

#include <atomic>

#include "common/OwningHandle.h"
#include "common/posix/NameRegistry.h"

namespace TESSARIN_LUMARC::slots {
namespace {

using TESSARIN_COMMON::NameRegistry;

struct SemaphoreTraits {
  using Type = sem_t*;
  static Type None() { return SEM_FAILED; }
  static void Close(Type semaphore) { sem_close(semaphore); }
};

// Loads may pass earlier stores. The semaphore's value has to be read after the frame's stores: a reader that takes the
// last unit just now must find the new frame, since nobody wakes it again for it.
void FullBarrier() {
  static std::atomic<int> word{0};  // an exchange and not a fence: the thread sanitizer knows no fences
  word.exchange(1, std::memory_order_seq_cst);
}

}  // namespace

struct NamedEvent::Handle {
  std::string name;
  TESSARIN_COMMON::OwningHandle<SemaphoreTraits> semaphore;
};

NamedEvent::NamedEvent(const std::string& name) : handle_(std::make_unique<Handle>()) {
  handle_->name = '/' + name;
  static_cast<void>(NameRegistry::GetInstance().Add(NameRegistry::Kind::Semaphore, handle_->name, [this] {
    handle_->semaphore.Reset(sem_open(handle_->name.c_str(), O_CREAT | O_EXCL, 0600, 0));
    return static_cast<bool>(handle_->semaphore);
  }));
}

NamedEvent::~NamedEvent() {
  NameRegistry::GetInstance().Remove(NameRegistry::Kind::Semaphore, handle_->name);
}

bool NamedEvent::Set() {
  if (!handle_->semaphore) return false;
  FullBarrier();
  int value = 0;
  if (sem_getvalue(handle_->semaphore.Get(), &value) != 0) return false;
  return value > 0 || sem_post(handle_->semaphore.Get()) == 0;
}

}  // namespace TESSARIN_LUMARC::slots
