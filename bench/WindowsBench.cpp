// The figures of the 32-bit program, which script/bench has built.
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "Subjects.h"
#include "Table.h"

namespace bench {

void WindowsSubject(const std::string& out) {
  const char* const command = std::getenv("RAVO_BENCH_WINDOWS");
  if (command == nullptr) throw std::runtime_error("RAVO_BENCH_WINDOWS has no command; run script/bench windows");
  const std::unique_ptr<FILE, int (*)(FILE*)> lines(popen(command, "r"), pclose);
  Table table("windows", "a frame and its two signals, 32-bit under Wine; plain copies and two SetEvent", "us");
  char name[32];
  double ours[2], theirs[2], ratio = 0;
  while (std::fscanf(lines.get(), "%31s %lf %lf %lf %lf %lf", name, &ours[0], &ours[1], &theirs[0], &theirs[1],
                     &ratio) == 6) {
    table.AddPair(name, {ours[0], ours[1]}, "three memcpy", {theirs[0], theirs[1]}, ratio, AtMost(1.05));
  }
  table.Finish(out);
}

}  // namespace bench
