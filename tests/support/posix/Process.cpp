#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

#include "../ProcessCalls.h"

namespace support::calls {
namespace {

void Check(int error, const char* call) {
  if (error != 0) throw std::runtime_error(std::string(call) + ": " + std::generic_category().message(error));
}

struct Pipe {
  std::array<int, 2> ends{-1, -1};  // reading, writing
  Pipe() { Check(pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe2"); }
};

int ExitCode(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

const char* const kProgramEnding = "";

Child Spawn(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  const Pipe out;
  const Pipe err;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
  pid_t pid = 0;
  const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(out.ends[1]);
  close(err.ends[1]);
  if (error != 0) {
    close(out.ends[0]);
    close(err.ends[0]);
  }
  Check(error, ("posix_spawn " + program).c_str());
  return {pid, out.ends[0], err.ends[0]};
}

std::optional<int> Wait(std::intptr_t process, std::chrono::milliseconds bound) {
  const auto pid = static_cast<pid_t>(process);
  pollfd ended{static_cast<int>(syscall(SYS_pidfd_open, pid, 0)), POLLIN, 0};
  Check(ended.fd >= 0 ? 0 : errno, "pidfd_open");
  const int ready = poll(&ended, 1, static_cast<int>(bound.count()));
  close(ended.fd);
  int status = 0;
  if (ready != 1 || waitpid(pid, &status, 0) != pid) return std::nullopt;
  return ExitCode(status);
}

void Kill(std::intptr_t process) {
  kill(static_cast<pid_t>(process), SIGKILL);
}

void Interrupt(std::intptr_t process) {
  kill(static_cast<pid_t>(process), SIGINT);
}

void CloseProcess(std::intptr_t) {}

std::size_t Read(std::intptr_t pipe, char* buffer, std::size_t size) {
  ssize_t count = 0;
  do {
    count = read(static_cast<int>(pipe), buffer, size);
  } while (count < 0 && errno == EINTR);
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void ClosePipe(std::intptr_t pipe) {
  close(static_cast<int>(pipe));
}

std::string OwnFolder() {
  std::array<char, 4096> path;
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  Check(size > 0 ? 0 : errno, "readlink");
  const std::string text(path.data(), static_cast<std::size_t>(size));
  return text.substr(0, text.rfind('/'));
}

}  // namespace support::calls
