#include "../ProcessDump.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <memory>
#include <new>

#include "CoreFile.h"
#include "common/Platform.h"
#include "common/posix/Descriptor.h"

namespace QX_MONITOR {

namespace {

using TESSARIN_COMMON::Descriptor;

constexpr unsigned kBoundSeconds = 120;

// Two connected ends. A byte that nobody takes any more is an error and no signal.
struct Link {
  Link() {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    parent.Reset(ends[0]);
    child.Reset(ends[1]);
  }
  Descriptor parent;
  Descriptor child;
};

bool Send(const Descriptor& end) {
  return send(end.Get(), "", 1, MSG_NOSIGNAL) == 1;
}

// False when the other end is closed.
bool Receive(const Descriptor& end) {
  char byte = 0;
  ssize_t count = 0;
  do {
    count = recv(end.Get(), &byte, 1, 0);
  } while (count < 0 && errno == EINTR);
  return count == 1;
}

// The child holds the process still; whatever happens to it, a bound ends it, and the kernel lets its threads go.
void BoundChild() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  sigset_t none;
  sigemptyset(&none);
  struct sigaction byDefault {};
  byDefault.sa_handler = SIG_DFL;
  sigaction(SIGALRM, &byDefault, nullptr);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  alarm(kBoundSeconds);
}

// Waits for the permit to trace its parent.
[[noreturn]] void RunChild(CoreFile& core, Link& link) {
  link.parent.Reset();
  BoundChild();
  const bool written = Receive(link.child) && core.Write();
  static_cast<void>(written && Send(link.child));
  _exit(0);
}

// A system may let only a named process trace others of its user.
class TracerPermit {
 public:
  explicit TracerPermit(pid_t tracer) { prctl(PR_SET_PTRACER, tracer); }
  ~TracerPermit() { prctl(PR_SET_PTRACER, 0); }
  TracerPermit(const TracerPermit&) = delete;
  TracerPermit& operator=(const TracerPermit&) = delete;
};

// The child answers by a byte, since a host may collect its exit code before us.
bool WriteInChild(CoreFile& core) {
  Link link;
  const pid_t child = link.child ? fork() : -1;
  if (child < 0) return false;
  if (child == 0) RunChild(core, link);
  link.child.Reset();
  const TracerPermit permit(child);
  const bool written = Send(link.parent) && Receive(link.parent);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
  return written;
}

// The room for all that the child may find is taken first; a process that has none left goes without a dump.
bool WriteCore(int file) try {
  const auto core = std::make_unique<CoreFile>(file, getpid(), static_cast<pid_t>(TESSARIN_COMMON::CurrentThreadId()));
  return WriteInChild(*core);
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace

bool WriteProcessDump(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file) return false;
  const bool written = WriteCore(file.Get());
  if (!written) unlink(path.c_str());
  return written;
}

}  // namespace QX_MONITOR
