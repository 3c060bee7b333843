#include "Faults.h"

#include <poll.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <new>

#include "Countdown.h"

namespace faults {
namespace {

struct Armed {
  std::atomic<int> call{-1};
  std::atomic<int> left{0};
  std::atomic<bool> fired{false};
};

// Shared with the children, so that the parent hears what became of it. Null before the first fault.
Armed* shared = nullptr;
bool isChild = false;  // the parent's own calls do not count

Armed& Share() {
  if (shared == nullptr) {
    void* memory = mmap(nullptr, sizeof(Armed), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) std::abort();
    shared = new (memory) Armed;
  }
  return *shared;
}

std::string ReadAll(int descriptor) {
  std::string text;
  char buffer[4096];
  for (ssize_t count = 0; (count = read(descriptor, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  close(descriptor);
  return text;
}

[[noreturn]] void RunChild(Call call, int nth, const std::function<std::string()>& scenario, int result, int errors) {
  alarm(60);  // a hang becomes a signal
  dup2(errors, STDERR_FILENO);
  isChild = true;
  Arm(call, nth);
  std::string text;
  try {
    text = scenario();
  } catch (const std::bad_alloc&) {
    text = "no memory";
  }
  Disarm();
  if (write(result, text.data(), text.size()) < 0) std::_Exit(1);
  std::exit(0);
}

}  // namespace

bool IsToFail(Call call) {
  if (!isChild || shared->call != static_cast<int>(call) || shared->left.fetch_sub(1) != 1) return false;
  shared->fired = true;
  return true;
}

void Arm(Call call, int nth) {
  Armed& armed = Share();
  armed.call = -1;
  armed.fired = false;
  armed.left = nth;
  armed.call = static_cast<int>(call);
}

bool Disarm() {
  shared->call = -1;
  return shared->fired;
}

Outcome RunWithFault(Call call, int nth, const std::function<std::string()>& scenario) {
  int result[2], errors[2];
  Share();
  if (pipe(result) != 0 || pipe(errors) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) RunChild(call, nth, scenario, result[1], errors[1]);
  close(result[1]);
  close(errors[1]);
  Outcome outcome;
  outcome.text = ReadAll(result[0]);
  outcome.errors = ReadAll(errors[0]);
  int status = 0;
  waitpid(child, &status, 0);
  outcome.fired = Disarm();
  if (WIFSIGNALED(status)) outcome.text += "killed by signal " + std::to_string(WTERMSIG(status));
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0) outcome.text += "exit " + std::to_string(WEXITSTATUS(status));
  return outcome;
}

}  // namespace faults
