#include "Measure.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace bench {

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

void PrintHead(const std::string& subject, const std::string& ours, const std::string& theirs) {
  std::printf("\n%s\n%-34s %14s %14s %8s %10s\n", subject.c_str(), "", ours.c_str(), theirs.c_str(), "ratio",
              "to reach");
}

void PrintRow(const std::string& name, double ours, double theirs, const std::string& unit, double limit,
              bool lowerIsBetter) {
  std::printf("%-34s %10.2f %-3s %10.2f %-3s %8.2f %7s %.2f\n", name.c_str(), ours, unit.c_str(), theirs, unit.c_str(),
              ours / theirs, lowerIsBetter ? "<=" : ">=", limit);
}

void PinToOneCore() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(0, &cores);
  sched_setaffinity(0, sizeof cores, &cores);
}

TempFolder::TempFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "ravo_bench_XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  path_ = path;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

}  // namespace bench
