// What a server costs that nobody talks to.
#include <unistd.h>

#include <fstream>
#include <thread>

#include "Server.h"
#include "Subjects.h"
#include "Table.h"

namespace bench {

namespace {

double ResidentMegabytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  double total = 0;
  double resident = 0;
  file >> total >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

}  // namespace

void IdleSubject(const std::string& out) {
  constexpr int kRounds = 5;
  constexpr std::chrono::seconds kSecond(1);
  Server server;
  std::this_thread::sleep_for(kSecond);  // the start is another subject
  Samples load, resident;
  for (int round = 0; round < kRounds; ++round) {
    const double before = server.Process().CpuNanoseconds();
    const double elapsed = NanosecondsOf([&] { std::this_thread::sleep_for(kSecond); });
    load.push_back((server.Process().CpuNanoseconds() - before) / elapsed * 100);
    resident.push_back(ResidentMegabytes(server.Process().Id()));
  }
  Table table("idle", "a server without a client", "");
  table.Add("load", "% of a core", load).limit = AtMost(1);
  table.Add("memory", "MB resident", resident).limit = AtMost(20);
  table.Finish(out);
}

}  // namespace bench
