// The program behind script/bench.
#include <fmt/format.h>
#include <ravo/log_abi.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "Measure.h"
#include "Server.h"
#include "Subjects.h"

namespace {

struct Subject {
  const char* name;
  const char* meaning;
  void (*run)(const std::string& out);
  bool byName = false;  // runs only when it is asked for
};

constexpr Subject kSubjects[] = {
    {"frame", "a frame from the engine's callback into the slot; three memcpy", bench::FrameSubject},
    {"wake", "a frame to the reader awake in another process; futex, socket, PipeWire", bench::WakeSubject},
    {"request", "a request and its reply; bare echo, gRPC, ZeroMQ, nng, sd-bus", bench::RequestSubject},
    {"inflight", "32 requests in flight; the same", bench::InFlightSubject},
    {"task", "posting and running tasks; asio::post", bench::TaskSubject},
    {"start", "process start to INIT, client gone to process gone", bench::StartSubject},
    {"growth", "cost by the number of streams, known streams, pending events", bench::GrowthSubject},
    {"idle", "what a server costs that nobody talks to", bench::IdleSubject},
    {"windows", "the 32-bit frame and its two signals under Wine; three memcpy, two SetEvent", bench::WindowsSubject,
     true}};

void Usage() {
  fmt::print("usage: ravo_bench [--out FOLDER] [SUBJECT ...]\n\n");
  for (const Subject& subject : kSubjects) fmt::print("  {:<10} {}\n", subject.name, subject.meaning);
  fmt::print("\nWithout a name: all but windows. FOLDER takes a SUBJECT.json each, out/bench by default.\n");
}

// Each subject gets a process of its own: some of them run a whole server, which ends its process. Whatever is logged
// goes into a folder that is thrown away.
bool RunAlone(const Subject& subject, const std::string& out) {
  const bench::TempFolder logs;
  const pid_t child = fork();
  if (child == 0) {
    bench::UseCores(bench::Cores::One);
    CreateTessarinLogger(0, logs.Path("log").c_str(), "TESSARIN_RAVO_COMMON", "Ravo", 0, 7, 1);
    int status = 0;
    try {
      subject.run(out);
    } catch (const std::exception& failure) {
      fmt::print(stderr, "ravo_bench: {}: {}\n", subject.name, failure.what());
      status = 1;
    }
    std::fflush(stdout);
    _exit(status);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool Known(const std::string& name) {
  return std::any_of(std::begin(kSubjects), std::end(kSubjects), [&](const Subject& s) { return s.name == name; });
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> names(argv + 1, argv + argc);
  std::string out = "out/bench";
  if (names.size() >= 2 && names[0] == "--out") {
    out = names[1];
    names.erase(names.begin(), names.begin() + 2);
  }
  const bool help = std::find(names.begin(), names.end(), "--help") != names.end();
  if (help || !std::all_of(names.begin(), names.end(), Known)) return Usage(), help ? 0 : 2;
  std::filesystem::create_directories(out);
  bool good = true;
  for (const Subject& subject : kSubjects) {
    const bool wanted =
        names.empty() ? !subject.byName : std::find(names.begin(), names.end(), subject.name) != names.end();
    if (wanted) good = RunAlone(subject, out) && good;
  }
  return good ? 0 : 1;
}
