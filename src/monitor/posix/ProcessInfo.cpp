#include "../ProcessInfo.h"

#include <unistd.h>

#include <fstream>
#include <limits>

#include "ProcStat.h"

namespace QX_MONITOR {

namespace {

// The number behind a key of a process's `status` file; 0 without one.
std::uint64_t StatusNumber(const std::string& folder, const std::string& key) {
  std::ifstream status(folder + "/status");
  for (std::string word; status >> word; status.ignore(std::numeric_limits<std::streamsize>::max(), '\n')) {
    std::uint64_t number = 0;
    if (word == key && status >> number) return number;
  }
  return 0;
}

std::string FolderOf(std::uint32_t processId) {
  return "/proc/" + std::to_string(processId);
}

// The figures of a process that lives. /proc also finds a thread by its id, and one that has ended and that its
// parent has not yet asked about: neither is a process that exists.
std::optional<ProcStat> LivingProcess(std::uint32_t processId) {
  const std::optional<ProcStat> stat = ReadProcStat(FolderOf(processId) + "/stat");
  if (!stat || stat->state == 'Z' || stat->state == 'X') return std::nullopt;
  if (StatusNumber(FolderOf(processId), "Tgid:") != processId) return std::nullopt;
  return stat;
}

std::uint64_t Processors() {
  static const auto count = static_cast<std::uint64_t>(sysconf(_SC_NPROCESSORS_ONLN));
  return count;
}

}  // namespace

ProcessPerformance ReadProcessPerformance(std::uint32_t processId) {
  const std::optional<ProcStat> stat = LivingProcess(processId);
  if (!stat) return {-1, 0, 0};
  // The resident pages in `stat` lag behind by what each processor has not yet added up.
  const std::uint64_t memoryKb = StatusNumber(FolderOf(processId), "VmRSS:");
  return {0, NsFromTicks(stat->userTicks + stat->kernelTicks) / Processors(), memoryKb * 1024};
}

bool ProcessExists(std::uint32_t processId) {
  return LivingProcess(processId).has_value();
}

}  // namespace QX_MONITOR
