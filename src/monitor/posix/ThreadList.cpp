#include "../ThreadList.h"

#include <filesystem>

#include "ProcStat.h"

namespace QX_MONITOR {

namespace {

constexpr const char* kTasks = "/proc/self/task";

}  // namespace

std::vector<std::uint32_t> OwnThreads() {
  std::vector<std::uint32_t> ids;
  std::error_code ignored;
  for (std::filesystem::directory_iterator task(kTasks, ignored), end; task != end; task.increment(ignored)) {
    ids.push_back(static_cast<std::uint32_t>(std::stoul(task->path().filename())));
  }
  return ids;
}

ThreadTimes ReadThreadTimes(const ThreadHandle& thread) {
  const auto stat = ReadProcStat(kTasks + ("/" + std::to_string(thread.Get())) + "/stat");
  if (!stat) return {};
  return {NsFromTicks(stat->userTicks), NsFromTicks(stat->kernelTicks)};
}

}  // namespace QX_MONITOR
