#pragma once

#include <sys/types.h>

#include "ReservedList.h"

namespace QX_MONITOR {

// Stops all threads of another process as its tracer. Made by the process that the threads belong to, before it forks
// the one that uses it: nothing here allocates after that. The end of the tracer lets the threads go in any case.
class StoppedThreads {
 public:
  StoppedThreads() : threads_(kMostThreads) {}

  // False if the system does not let this process trace the other. A thread that does not stop within its bound,
  // deep in the kernel, is left out.
  [[nodiscard]] bool Stop(pid_t process);
  // Lets the threads go on.
  void Release() const;

  struct StoppedThread {
    pid_t id;
    int signal;   // 0, or what the thread was about to be given, and is given when it goes on
    bool stands;  // false: seized, but it did not stop
  };
  [[nodiscard]] std::span<const StoppedThread> Threads() const { return threads_.Items(); }

 private:
  static constexpr std::size_t kMostThreads = 8192;

  // Whether there was a thread that had not been seen.
  bool StopNewThreads(int taskFolder, bool& refused);
  bool StopThread(pid_t id, bool& refused);
  [[nodiscard]] bool IsKnown(pid_t id) const;

  ReservedList<StoppedThread> threads_;
};

}  // namespace QX_MONITOR
