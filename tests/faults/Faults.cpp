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

namespace faults {
namespace {

struct Armed {
  std::atomic<const char*> call{nullptr};  // a literal lies at the same place in all children
  std::atomic<int> left{0};
  std::atomic<bool> fired{false};
};

// Shared with the children, so that the parent hears what became of it. Null before the first fault.
Armed* shared = nullptr;
bool isChild = false;  // the parent's own calls do not count
int toParent = -1;     // the child's

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

[[noreturn]] void RunChild(const Scenario& scenario, int result, int errors) {
  alarm(60);  // a hang becomes a signal
  dup2(errors, STDERR_FILENO);
  isChild = true;
  toParent = result;
  std::string text;
  try {
    text = scenario();
  } catch (const std::bad_alloc&) {
    text = "no memory";
  }
  Disarm();
  Tell(text);
  std::exit(0);
}

}  // namespace

bool IsToFail(std::string_view call) {
  if (!isChild) return false;
  const char* const armed = shared->call;
  if (armed == nullptr || call != armed || shared->left.fetch_sub(1) != 1) return false;
  shared->fired = true;
  return true;
}

void Arm(const char* call, int nth) {
  shared->left = nth;
  shared->call = call;
}

bool Disarm() {
  shared->call = nullptr;
  return shared->fired;
}

bool HasFired() {
  return shared->fired;
}

void Tell(std::string_view text) {
  if (write(toParent, text.data(), text.size()) < 0) std::_Exit(1);
}

Outcome RunWithFault(const char* call, int nth, const Scenario& scenario, const Client& client) {
  int result[2], errors[2];
  Share().fired = false;
  if (!client) Arm(call, nth);
  if (pipe(result) != 0 || pipe(errors) != 0) std::abort();
  const pid_t child = fork();
  if (child == 0) RunChild(scenario, result[1], errors[1]);
  close(result[1]);
  close(errors[1]);
  Outcome outcome;
  if (client) outcome.text = client([&] { Arm(call, nth); });
  outcome.text += ReadAll(result[0]);
  outcome.errors = ReadAll(errors[0]);
  int status = 0;
  waitpid(child, &status, 0);
  outcome.fired = Disarm();
  if (WIFSIGNALED(status)) outcome.text += "killed by signal " + std::to_string(WTERMSIG(status));
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0) outcome.text += "exit " + std::to_string(WEXITSTATUS(status));
  return outcome;
}

}  // namespace faults
