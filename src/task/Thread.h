#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace TESSARIN_TASK {

class Thread;

// The body of a thread.
class Runnable {
 public:
  virtual ~Runnable() = default;
  // Runs on the new thread; polls thread->StopRequested() where it wants to be stoppable.
  virtual void Run(Thread* thread) = 0;
};

// One index of thread-local storage. Its owner keeps it longer than the threads that register in it.
class ThreadLocalSlot {
 public:
  ThreadLocalSlot();
  ~ThreadLocalSlot();
  ThreadLocalSlot(const ThreadLocalSlot&) = delete;
  ThreadLocalSlot& operator=(const ThreadLocalSlot&) = delete;

  // False if the system had no index left; nothing can then be kept.
  [[nodiscard]] bool Works() const;
  void Set(void* value);
  [[nodiscard]] void* Get() const;

 private:
  std::uintptr_t index_;
};

// The one class through which the program makes its own threads: it names the thread for debuggers and dumps, carries
// a cooperative stop flag, and can tell whether the caller is this very thread. Used by its owner's thread; only
// Stop, StopRequested and IsCurrent may come from others.
class Thread {
 public:
  // The slot, which may be null, is where the running thread registers this object for Current.
  explicit Thread(ThreadLocalSlot* slot = nullptr);
  // Sets the stop flag and gives the thread up without joining: Windows ends it there and then; elsewhere it is
  // detached and goes on until its body sees the flag. An owner that wants a clean end joins first.
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  // False, with no change, if the thread runs. The second argument has no effect.
  bool SetName(const std::string& name, int reserved = 0);
  // False if the thread runs already or the system has none to give, no memory or no slot for it. The body, not owned,
  // may be null.
  bool Start(Runnable* body);
  void Stop() { stop_ = true; }
  // Waits for the end of the thread, without a bound; returns at once if there is none.
  void Join();
  void StopAndJoin();
  // The system's own priority number; nothing happens without a thread.
  void SetPriority(int priority);

  [[nodiscard]] bool StopRequested() const { return stop_; }
  [[nodiscard]] bool IsRunning() const { return handle_ != 0; }
  [[nodiscard]] std::uint32_t Id() const { return id_; }  // 0 without a thread

  // What the calling thread registered in the slot; null without a slot.
  [[nodiscard]] Thread* Current() const;
  [[nodiscard]] bool IsCurrent() const { return Current() == this; }
  void ClearCurrent();

 private:
  friend void EnterThread(Thread& thread, Runnable* body);

  std::uintptr_t handle_ = 0;  // of the system; 0 when no thread runs
  std::uint32_t id_ = 0;
  std::string name_ = "vemora_common_thread";
  ThreadLocalSlot* const slot_;
  std::atomic<bool> stop_{false};
};

// Names the calling thread for debuggers and dumps; the system may cut a long name.
void NameCurrentThread(const std::string& name);

}  // namespace TESSARIN_TASK
