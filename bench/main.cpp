// ravo_bench [SUBJECT ...]: prints the tables of script/bench.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "Measure.h"

namespace {

struct Subject {
  const char* name;
  void (*run)();
};

constexpr Subject kSubjects[] = {{"frame", bench::FrameSubject},
                                 {"request", bench::RequestSubject},
                                 {"task", bench::TaskSubject},
                                 {"idle", bench::IdleSubject}};

bool Wanted(const char* name, int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], name) == 0) return true;
  }
  return argc == 1;
}

// Each subject gets a process of its own: one of them runs a whole server, which ends its process.
bool RunAlone(const Subject& subject) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    subject.run();
    std::fflush(stdout);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  bool good = true;
  for (const Subject& subject : kSubjects) {
    if (!Wanted(subject.name, argc, argv) || RunAlone(subject)) continue;
    std::fprintf(stderr, "ravo_bench: %s failed\n", subject.name);
    good = false;
  }
  return good ? 0 : 1;
}
