// What a server costs that nobody talks to.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "Measure.h"

namespace bench {

namespace {

constexpr int kSeconds = 5;

// User and system time of a process, in seconds.
double CpuSeconds(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  std::getline(file, text);
  std::istringstream fields(text.substr(text.rfind(')') + 2));
  std::string skip;
  for (int i = 0; i < 11; ++i) fields >> skip;
  double user = 0;
  double system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double ResidentMegabytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  double total = 0;
  double resident = 0;
  file >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

}  // namespace

void IdleSubject() {
  const TempFolder folder;
  const std::string program = ProgramFolder() + "/ravo-host";
  const std::string options = R"({"ipcPath":")" + folder.Path("pipe") + R"(","logPath":")" + folder.Path("log") +
                              R"(","manuallyDylibPath":")" + ProgramFolder() + R"("})";
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) _exit(1);
    execl(program.c_str(), program.c_str(), options.c_str(), static_cast<char*>(nullptr));
    _exit(1);
  }
  while (access(folder.Path("pipe").c_str(), F_OK) != 0) usleep(1000);
  sleep(1);
  const double before = CpuSeconds(child);
  sleep(kSeconds);
  const double load = (CpuSeconds(child) - before) / kSeconds * 100;
  std::printf(
      "\nIdle server, no client\n%-34s %10.2f %%   (to reach: under 1)\n%-34s %10.1f MB  (to reach: under 20)\n",
      "share of a core", load, "resident", ResidentMegabytes(child));
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
}

}  // namespace bench
