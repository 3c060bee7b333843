#include "Server.h"

#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "common/JsonWriter.h"
#include "peers/EchoPeer.h"

namespace bench {

namespace {

std::string Options(const TempFolder& folder, const std::string& params) {
  TESSARIN_COMMON::JsonWriter json;
  json.StartObject();
  json.Add("ipcPath", folder.Path("pipe"));
  json.Add("logPath", folder.Path("log"));
  json.Add("manuallyDylibPath", ProgramFolder());
  if (!params.empty()) json.Add("rtcParams", "{" + params + "}");
  json.EndObject();
  return json.Text();
}

void RunHost(const std::string& options) {
  const std::string program = ProgramFolder() + "/ravo-host";
  for (FILE* stream : {stdout, stderr}) {
    if (std::freopen("/dev/null", "w", stream) == nullptr) return;
  }
  execl(program.c_str(), program.c_str(), options.c_str(), static_cast<char*>(nullptr));
}

}  // namespace

std::string ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

void UseCores(Cores cores) {
  cpu_set_t set;
  CPU_ZERO(&set);
  const int last = cores == Cores::One ? 0 : CPU_SETSIZE - 1;
  for (int core = 0; core <= last; ++core) CPU_SET(core, &set);
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    sched_setaffinity(std::stoi(thread.path().filename().string()), sizeof set, &set);
  }
}

Child::Child(const std::function<void()>& work) : id_(fork()) {
  Require(id_ >= 0, "fork");
  if (id_ > 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  work();
  _exit(1);
}

Child::~Child() {
  if (id_ == 0) return;
  kill(id_, SIGKILL);
  WaitEnd();
}

void Child::WaitEnd() {
  waitpid(id_, nullptr, 0);
  id_ = 0;
}

double Child::CpuNanoseconds() const {
  clockid_t clock{};
  timespec used{};
  Require(clock_getcpuclockid(id_, &clock) == 0 && clock_gettime(clock, &used) == 0, "clock_getcpuclockid");
  return static_cast<double>(used.tv_sec) * 1e9 + static_cast<double>(used.tv_nsec);
}

Server::Server(const std::string& params) : process_([&] { RunHost(Options(folder_, params)); }) {}

}  // namespace bench
