#include "../Program.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <thread>

namespace host {

const char* const kRavoFile = "libravo.so";
const char* const kEngineFile = "/libtessarin-lumarc.so";

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

std::string ProgramFolder() {
  std::array<char, 4096> path;
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  const std::string text(path.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
  return text.substr(0, text.rfind('/'));
}

void OnInterrupt(std::function<void()> stop) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  // Every thread made from here on inherits the mask, so that the signals come to the waiting thread alone.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals, stop = std::move(stop)] {
    int signal = 0;
    sigwait(&signals, &signal);
    stop();
    sigwait(&signals, &signal);
    _exit(130);
  }).detach();
}

}  // namespace host
