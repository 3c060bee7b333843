#include "../ProcessSample.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace ravo::ctl {
namespace {

namespace fs = std::filesystem;

struct Stat {
  std::string name;
  std::uint64_t cpuNs = 0;
  std::uint64_t residentPages = 0;
};

// The name stands in brackets and may hold anything; the numbers are counted from behind it.
std::optional<Stat> ReadStat(const fs::path& file) {
  constexpr int kUserTime = 12;  // words behind the name
  constexpr int kKernelTime = 13;
  constexpr int kResident = 22;
  std::ifstream in(file);
  std::string line;
  if (!std::getline(in, line)) return std::nullopt;
  const auto open = line.find('(');
  const auto close = line.rfind(')');
  if (open == std::string::npos || close == std::string::npos) return std::nullopt;
  Stat stat{line.substr(open + 1, close - open - 1), 0, 0};
  const std::uint64_t nsPerTick = 1'000'000'000u / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
  std::istringstream words(line.substr(close + 1));
  std::string word;
  for (int i = 1; words >> word && i <= kResident; ++i) {
    if (i == kUserTime || i == kKernelTime) stat.cpuNs += std::stoull(word) * nsPerTick;
    if (i == kResident) stat.residentPages = std::stoull(word);
  }
  return stat;
}

}  // namespace

std::optional<ProcessSample> SampleProcess(std::uint32_t pid) {
  const fs::path folder = "/proc/" + std::to_string(pid);
  const auto process = ReadStat(folder / "stat");
  if (!process) return std::nullopt;
  ProcessSample sample{process->name, process->cpuNs, 0, {}};
  sample.memoryBytes = process->residentPages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  std::error_code ignored;
  for (fs::directory_iterator task(folder / "task", ignored), end; task != end; task.increment(ignored)) {
    const auto thread = ReadStat(task->path() / "stat");
    const auto id = static_cast<std::uint32_t>(std::stoul(task->path().filename()));
    if (thread) sample.threads.push_back({id, thread->name, thread->cpuNs});
  }
  return sample;
}

}  // namespace ravo::ctl
