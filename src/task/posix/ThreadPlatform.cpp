#include "../ThreadPlatform.h"

#include <pthread.h>
#include <semaphore.h>
#include <sys/resource.h>

#include <atomic>
#include <climits>
#include <memory>
#include <semaphore>

#include "../Thread.h"
#include "common/Platform.h"

namespace TESSARIN_TASK {

namespace {

// Lives on the stack of StartNativeThread, which waits for the new thread's id.
struct Launch {
  ThreadEntry entry;
  void* argument;
  std::uint32_t id = 0;
  std::binary_semaphore known{0};
};

struct NativeHandle {
  pthread_t thread;
  std::uint32_t id;
};

NativeHandle* FromHandle(std::uintptr_t handle) {
  return reinterpret_cast<NativeHandle*>(handle);
}

void* Enter(void* argument) {
  auto& launch = *static_cast<Launch*>(argument);
  const ThreadEntry entry = launch.entry;
  void* const entryArgument = launch.argument;
  launch.id = TESSARIN_COMMON::CurrentThreadId();
  launch.known.release();
  entry(entryArgument);
  return nullptr;
}

}  // namespace

NativeThread StartNativeThread(ThreadEntry entry, void* argument) {
  Launch launch{.entry = entry, .argument = argument};
  auto handle = std::make_unique<NativeHandle>();
  if (pthread_create(&handle->thread, nullptr, Enter, &launch) != 0) return {};
  launch.known.acquire();
  handle->id = launch.id;
  return {reinterpret_cast<std::uintptr_t>(handle.release()), launch.id};
}

void JoinNativeThread(std::uintptr_t handle) {
  const std::unique_ptr<NativeHandle> own(FromHandle(handle));
  pthread_join(own->thread, nullptr);
}

void AbandonNativeThread(std::uintptr_t handle) {
  const std::unique_ptr<NativeHandle> own(FromHandle(handle));
  pthread_detach(own->thread);
}

// The nearest service to a thread's priority: its nice value, which Linux keeps for each thread.
void SetNativePriority(std::uintptr_t handle, int priority) {
  setpriority(PRIO_PROCESS, FromHandle(handle)->id, priority);
}

// A semaphore that never goes above one. Not an atomic's own wait, which yields the core some times before it sleeps:
// on a busy core each of them lets another thread run and comes back for nothing.
struct AutoResetEvent::State {
  State() { sem_init(&semaphore, 0, 0); }
  ~State() { sem_destroy(&semaphore); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  sem_t semaphore;
  std::atomic<bool> set{false};
};

AutoResetEvent::AutoResetEvent() : state_(std::make_unique<State>()) {}
AutoResetEvent::~AutoResetEvent() = default;

void AutoResetEvent::Set() {
  if (!state_->set.exchange(true)) sem_post(&state_->semaphore);
}

void AutoResetEvent::Wait() {
  while (sem_wait(&state_->semaphore) != 0) {
  }                             // a signal came between
  state_->set.exchange(false);  // sees what was done before the last Set, also one that found it set
}

long InitialiseThreadRuntime() {
  return 0;
}
void UninitialiseThreadRuntime() {}

// Zero is somebody's key, so a slot for which the system had none keeps one that the calls below refuse.
ThreadLocalSlot::ThreadLocalSlot() : index_(0) {
  pthread_key_t key = 0;
  index_ = pthread_key_create(&key, nullptr) == 0 ? key : PTHREAD_KEYS_MAX;
}
ThreadLocalSlot::~ThreadLocalSlot() {
  pthread_key_delete(static_cast<pthread_key_t>(index_));
}
bool ThreadLocalSlot::Works() const {
  return index_ != PTHREAD_KEYS_MAX;
}
void ThreadLocalSlot::Set(void* value) {
  pthread_setspecific(static_cast<pthread_key_t>(index_), value);
}
void* ThreadLocalSlot::Get() const {
  return pthread_getspecific(static_cast<pthread_key_t>(index_));
}

void NameCurrentThread(const std::string& name) {
  constexpr std::size_t kMaxName = 15;  // the kernel keeps no more
  pthread_setname_np(pthread_self(), name.substr(0, kMaxName).c_str());
}

}  // namespace TESSARIN_TASK
