#include "StoppedThreads.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "common/posix/Descriptor.h"

namespace QX_MONITOR {

namespace {

// A folder entry as the kernel hands it out. The C library's own reader of folders allocates.
struct KernelEntry {
  std::uint64_t inode;
  std::int64_t next;
  std::uint16_t size;
  std::uint8_t type;
  char name[1];
};

pid_t IdOf(const char* name) {
  pid_t id = 0;
  std::from_chars(name, name + std::strlen(name), id);  // stays 0 for "." and ".."
  return id;
}

// Polls, since a thread that is deep in the kernel may not stop for long.
bool WaitForStop(pid_t id, int& status) {
  constexpr int kMostTurns = 2000;
  constexpr timespec kTurn{0, 1'000'000};
  for (int turn = 0; turn < kMostTurns; ++turn) {
    const pid_t result = waitpid(id, &status, __WALL | WNOHANG);
    if (result == id) return WIFSTOPPED(status);
    if (result < 0 && errno != EINTR) return false;
    nanosleep(&kTurn, nullptr);
  }
  return false;
}

}  // namespace

void StoppedThreads::Release() const {
  for (const StoppedThread& thread : Threads()) {
    if (thread.stands) ptrace(PTRACE_DETACH, thread.id, nullptr, thread.signal);
  }
}

bool StoppedThreads::Stop(pid_t process) {
  std::array<char, 64> path{};
  std::snprintf(path.data(), path.size(), "/proc/%d/task", process);
  const TESSARIN_COMMON::Descriptor folder(open(path.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  bool refused = !folder;
  // A thread that still runs may make others while the list is read: it is read until it holds nothing new.
  while (!refused && StopNewThreads(folder.Get(), refused)) continue;
  return !refused && !Threads().empty();
}

bool StoppedThreads::StopNewThreads(int taskFolder, bool& refused) {
  alignas(KernelEntry) std::array<char, 16384> entries;
  bool foundNew = false;
  lseek(taskFolder, 0, SEEK_SET);
  for (;;) {
    const long size = syscall(SYS_getdents64, taskFolder, entries.data(), entries.size());
    if (size <= 0) return foundNew;
    for (long at = 0; at < size;) {
      const auto* const entry = reinterpret_cast<const KernelEntry*>(entries.data() + at);
      const pid_t id = IdOf(entry->name);
      if (id != 0 && !IsKnown(id)) foundNew = StopThread(id, refused) || foundNew;
      at += entry->size;
    }
  }
}

bool StoppedThreads::StopThread(pid_t id, bool& refused) {
  if (ptrace(PTRACE_SEIZE, id, nullptr, nullptr) != 0) {
    refused = refused || errno == EPERM;  // any other reason is its end
    return false;
  }
  int status = 0;
  const bool stands = ptrace(PTRACE_INTERRUPT, id, nullptr, nullptr) == 0 && WaitForStop(id, status);
  const bool isSignal = stands && status >> 16 == 0;
  refused = !threads_.Add({.id = id, .signal = isSignal ? WSTOPSIG(status) : 0, .stands = stands}) || refused;
  return true;
}

bool StoppedThreads::IsKnown(pid_t id) const {
  return std::ranges::any_of(Threads(), [id](const StoppedThread& thread) { return thread.id == id; });
}

}  // namespace QX_MONITOR
