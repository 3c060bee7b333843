#pragma once

#include <cstdint>
#include <memory>

// What Thread needs of the system.
namespace TESSARIN_TASK {

using ThreadEntry = void (*)(void* argument);

struct NativeThread {
  std::uintptr_t handle = 0;  // 0: no thread came
  std::uint32_t id = 0;
};

// Starts a thread with the default stack; returns when its id is known.
NativeThread StartNativeThread(ThreadEntry entry, void* argument);
void JoinNativeThread(std::uintptr_t handle);
// For a thread whose owner goes without joining.
void AbandonNativeThread(std::uintptr_t handle);
void SetNativePriority(std::uintptr_t handle, int priority);

// Lets one thread sleep until another wakes it: set once, it lets one wait through. Not the standard library's atomic
// wait: it may miss a wake-up where the system has no help for it, and yields some times before it sleeps.
class AutoResetEvent {
 public:
  AutoResetEvent();
  ~AutoResetEvent();
  AutoResetEvent(const AutoResetEvent&) = delete;
  AutoResetEvent& operator=(const AutoResetEvent&) = delete;

  void Set();
  void Wait();

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

// The per-thread initialisation that the platform asks of threads that run foreign code; 0 on success, else the
// system's code. Only after a success it is undone.
long InitialiseThreadRuntime();
void UninitialiseThreadRuntime();

}  // namespace TESSARIN_TASK
