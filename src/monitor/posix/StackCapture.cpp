#include "StackCapture.h"

#include <semaphore.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fstream>
#include <mutex>
#include <string>

namespace QX_MONITOR {

namespace {

constexpr std::size_t kStackBytes = std::size_t{256} * 1024;
constexpr std::size_t kPageBytes = 4096;
constexpr std::time_t kBoundSeconds = 1;

// Idle -> Asked -> Copying -> Answered -> Idle. The sampler takes Asked back to Idle when its patience ends, so a
// thread that comes late finds that nobody asks.
enum class Step { Idle, Asked, Copying, Answered };

// Where the interrupted thread leaves its context: there before the first signal, and never freed, since a thread that
// blocks the signal may answer at any later time.
struct Desk {
  Desk() { sem_init(&answered, 0, 0); }

  std::atomic<Step> step{Step::Idle};
  std::atomic<pid_t> thread{0};  // who is asked
  sem_t answered;
  // Written by the asked thread while Copying, read by the sampler once Answered.
  Registers registers{};
  std::size_t stackBytes = 0;
  std::array<std::byte, kStackBytes> stack;
};

std::atomic<Desk*> theDesk{nullptr};

Registers RegistersOf(const ucontext_t& context) {
  constexpr std::array kByDwarfNumber = {REG_RAX, REG_RDX, REG_RCX, REG_RBX, REG_RSI, REG_RDI, REG_RBP, REG_RSP, REG_R8,
                                         REG_R9,  REG_R10, REG_R11, REG_R12, REG_R13, REG_R14, REG_R15, REG_RIP};
  Registers registers{};
  for (std::size_t i = 0; i < kRegisterCount; ++i) {
    registers[i] = static_cast<std::uint64_t>(context.uc_mcontext.gregs[kByDwarfNumber[i]]);
  }
  return registers;
}

// The kernel copies, since it stops at the stack's end instead of faulting. It does so by whole pieces, here pages.
std::size_t CopyMemory(std::uint64_t from, std::byte* to, std::size_t size) {
  std::array<iovec, kStackBytes / kPageBytes + 1> pieces;
  std::size_t count = 0;
  for (std::uint64_t at = from; at < from + size; ++count) {
    const std::uint64_t end = std::min<std::uint64_t>((at / kPageBytes + 1) * kPageBytes, from + size);
    pieces[count] = {reinterpret_cast<void*>(at), end - at};
    at = end;
  }
  const iovec whole{to, size};
  const ssize_t copied = process_vm_readv(getpid(), &whole, 1, pieces.data(), count, 0);
  return copied > 0 ? static_cast<std::size_t>(copied) : 0;
}

// Runs on the asked thread, which may hold any lock: system calls and atomics only.
void Answer(int, siginfo_t*, void* context) {
  const int savedError = errno;
  Desk& desk = *theDesk.load(std::memory_order_acquire);
  Step asked = Step::Asked;
  if (desk.thread.load(std::memory_order_acquire) == static_cast<pid_t>(syscall(SYS_gettid)) &&
      desk.step.compare_exchange_strong(asked, Step::Copying)) {
    desk.registers = RegistersOf(*static_cast<const ucontext_t*>(context));
    desk.stackBytes = CopyMemory(desk.registers[kStackPointer], desk.stack.data(), kStackBytes);
    desk.step.store(Step::Answered);
    sem_post(&desk.answered);
  }
  errno = savedError;
}

// One that nobody else has use for. The handler stays for good: without it a late signal would end the process.
int TakeSignal() {
  for (int signal = SIGRTMAX - 1; signal >= SIGRTMIN; --signal) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_sigaction = Answer;
    action.sa_flags = SA_SIGINFO | SA_RESTART | SA_ONSTACK;
    sigfillset(&action.sa_mask);
    return sigaction(signal, &action, nullptr) == 0 ? signal : 0;
  }
  return 0;
}

// An unanswered signal waits with its thread, and will answer a later question too: no second one is put beside it.
bool IsSignalPending(std::uint32_t threadId, int signal) {
  std::ifstream status("/proc/self/task/" + std::to_string(threadId) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (!line.starts_with("SigPnd:")) continue;
    return (std::stoull(line.substr(line.find_first_not_of(" \t", 7)), nullptr, 16) >> (signal - 1) & 1) != 0;
  }
  return false;
}

bool SendSignal(std::uint32_t threadId, int signal) {
  return IsSignalPending(threadId, signal) || syscall(SYS_tgkill, getpid(), threadId, signal) == 0;
}

timespec Deadline() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  time.tv_sec += kBoundSeconds;
  return time;
}

// A thread that has begun to copy is waited for in any case: the desk is its own until it is done.
bool WaitForAnswer(Desk& desk) {
  const timespec deadline = Deadline();
  while (desk.step.load() != Step::Answered) {
    if (sem_clockwait(&desk.answered, CLOCK_MONOTONIC, &deadline) == 0 || errno == EINTR) continue;
    Step asked = Step::Asked;
    if (desk.step.compare_exchange_strong(asked, Step::Idle)) return false;
    sem_wait(&desk.answered);
  }
  return true;
}

Desk& MakeDesk() {
  auto* const desk = new Desk;
  theDesk.store(desk, std::memory_order_release);
  return *desk;
}

}  // namespace

bool CaptureThread(std::uint32_t threadId, ThreadContext& context) {
  static auto* const turn = new std::mutex;
  const std::lock_guard lock(*turn);
  static Desk& desk = MakeDesk();
  static const int signal = TakeSignal();
  if (signal == 0) return false;
  while (sem_trywait(&desk.answered) == 0) continue;  // of an answer that was not waited for
  desk.thread.store(static_cast<pid_t>(threadId));
  desk.step.store(Step::Asked);
  if (!SendSignal(threadId, signal)) {
    desk.step.store(Step::Idle);
    return false;
  }
  if (!WaitForAnswer(desk)) return false;
  context.registers = desk.registers;
  context.stack.assign(desk.stack.begin(), desk.stack.begin() + static_cast<std::ptrdiff_t>(desk.stackBytes));
  desk.step.store(Step::Idle);
  return true;
}

}  // namespace QX_MONITOR
