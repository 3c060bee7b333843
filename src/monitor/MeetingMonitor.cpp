#include "MeetingMonitor.h"

#include <algorithm>
#include <utility>

#include "LibMonitorSystem.h"
#include "ProcessInfo.h"
#include "SystemInfo.h"
#include "common/JsonWriter.h"
#include "log/LogInstance.h"

namespace QX_MONITOR {

namespace {

using TESSARIN_COMMON::JsonText;
using TESSARIN_COMMON::JsonWriter;
using TESSARIN_LOG::Log;

constexpr const char* kCostKey = "vc_meeting_pcsdk_server_cost_time";
constexpr const char* kPerformanceKey = "vc_pc_meeting_perf_monitor";
constexpr const char* kArchitecture = sizeof(void*) == 4 ? "x86" : "x86_64";
constexpr std::uint32_t kSnapshotMs = 600'000;

// A payload is an array, here of one object.
template <class AddMembers>
TrackItem CostItem(AddMembers addMembers) {
  JsonWriter writer;
  writer.StartArray();
  writer.StartObject();
  addMembers(writer);
  writer.EndObject();
  writer.EndArray();
  return {kCostKey, writer.Text()};
}

// The analytics know one system, so its type is always the same.
void AddSystemInfo(JsonWriter& writer, const DevicePerformance& machine) {
  auto& names = LibMonitorSystem::GetInstance();
  writer.StartObject("system_basic_info");
  writer.Add("cpu_num", machine.cpuThreads);
  writer.Add("physical_cpu_num", machine.cpuCores);
  writer.Add("os_type", "Windows");
  writer.Add("total_memory", machine.memory);
  writer.Add("os_version", OsVersion());
  writer.Add("manufacturer", names.Manufacturer());
  writer.Add("model", names.Model());
  writer.Add("arch", kArchitecture);
  writer.EndObject();
}

void AddPerformance(JsonWriter& writer, const std::string& pname, double cpu, std::uint64_t memoryBytes) {
  constexpr std::int64_t kEnableFlags = 0x601;
  writer.StartObject();
  writer.StartObject("pref_data_tick");
  writer.Add("cpu_average", cpu);
  writer.Add("memory_average", static_cast<double>(memoryBytes));
  writer.EndObject();
  writer.Add("tag", "meeting");
  writer.Add("pname", pname);
  writer.Add("enable_flags", kEnableFlags);
  writer.Add("changed_flags", std::int64_t{0});
  writer.Add("if_flag_changed", false);
  writer.EndObject();
}

class SystemSampler final : public ProcessSampler {
 public:
  ProcessPerformance Sample(std::uint32_t processId) override { return ReadProcessPerformance(processId); }
};

}  // namespace

ProcessSampler& ProcessSampler::System() {
  static auto* const sampler = new SystemSampler;
  return *sampler;
}

MeetingMonitor::MeetingMonitor(SendTracks send, TESSARIN_TASK::TimerTaskRunner& timers, ProcessSampler& sampler,
                               const TESSARIN_COMMON::Clock& clock)
    : send_(std::move(send)), timers_(timers), sampler_(sampler), clock_(clock) {}

void MeetingMonitor::AddMonitorInfo(std::int64_t pid, const std::string& pname) {
  Log("[AddMonitorInfo] pid:{}, pname:{}", pid, pname);
  const std::lock_guard lock(mutex_);
  processes_[pid] = pname;
}

void MeetingMonitor::ReportInitCost(std::int64_t costMs, const DevicePerformance& machine) {
  {
    const std::lock_guard lock(snapshotMutex_);
    machine_ = machine;
  }
  Log("[handle_join_meeting_monitor]cpuCores:{},os:{},osVersion:{},deviceModel:{},gpuModel:{},cpuModel:{},memory:{},"
      "threads:{},frequency:{}",
      machine.cpuCores, machine.os, machine.osVersion, machine.deviceModel, machine.gpuModel, machine.cpuModel,
      machine.memory, machine.cpuThreads, machine.cpuFrequency);
  SendTrackList({CostItem([&](JsonWriter& writer) {
    writer.Add("sdk_module_name", "ravo_init_total_time_ms_v2");
    writer.Add("sdk_module_cost", costMs);
    AddSystemInfo(writer, machine);
  })});
}

void MeetingMonitor::ReportFunctionCost(const std::string& name, std::int64_t costMs) const {
  SendTrackList({CostItem([&](JsonWriter& writer) {
    writer.Add("function_name", name);
    writer.Add("cost", costMs);
  })});
}

void MeetingMonitor::ReportJoinCost(std::int64_t costMs) const {
  if (costMs <= 0) return;
  SendTrackList({CostItem([&](JsonWriter& writer) { writer.Add("sdk_join_meeting_cost", costMs); })});
}

void MeetingMonitor::ReportJoinTimeout() const {
  SendTrackList({CostItem([](JsonWriter& writer) { writer.Add("sdk_join_meeting_timeout", true); })});
}

void MeetingMonitor::StartMeetingSnapshot(bool enabled) {
  if (!enabled) {
    Log("monitor not enabled");
    return;
  }
  handle_join_meeting_monitor();
  const std::lock_guard lock(snapshotMutex_);
  snapshotTimerId_ = timers_.AddTimer(kSnapshotMs, [this] { handle_join_meeting_monitor(); });
}

// The cancel waits for a snapshot that runs, which needs the mutex.
void MeetingMonitor::StopMeetingSnapshot() {
  std::int32_t id = 0;
  {
    const std::lock_guard lock(snapshotMutex_);
    id = snapshotTimerId_;
  }
  timers_.CancelTimer(id);
}

void MeetingMonitor::handle_join_meeting_monitor() {
  JsonWriter writer;
  bool any = false;
  writer.StartArray();
  {
    const std::lock_guard lock(snapshotMutex_);
    for (const auto& [pid, pname] : Processes()) {
      Sample now{};
      if (!TakeSample(pid, now)) continue;
      const auto [former, isFirst] = formerSamples_.try_emplace(pid, now);
      if (isFirst) continue;
      AddPerformance(writer, pname, CpuPercent(former->second, now), now.performance.memoryBytes);
      former->second = now;
      any = true;
    }
  }
  writer.EndArray();
  if (any) SendTrackList({{kPerformanceKey, writer.Text()}});
}

std::map<std::int64_t, std::string> MeetingMonitor::Processes() const {
  const std::lock_guard lock(mutex_);
  return processes_;
}

bool MeetingMonitor::TakeSample(std::int64_t pid, Sample& sample) {
  sample.performance = sampler_.Sample(static_cast<std::uint32_t>(pid));
  sample.takenNs = clock_.SteadyNs();
  Log("[handle_join_meeting_monitor]res: {},{},{}", sample.performance.status, sample.performance.cpuTime,
      sample.performance.memoryBytes);
  return sample.performance.status == 0;
}

// Of one processor: a process that keeps two of them busy has 200. The samples hold a share of all processors.
double MeetingMonitor::CpuPercent(const Sample& before, const Sample& now) const {
  const std::int64_t costNs = std::max<std::int64_t>(now.takenNs - before.takenNs, 1);
  const auto usedNs = static_cast<std::int64_t>(now.performance.cpuTime - before.performance.cpuTime);
  const double cpu =
      static_cast<double>(usedNs) / static_cast<double>(costNs) * 100.0 * static_cast<double>(machine_.cpuThreads);
  Log("handle_join_meeting_monitor cpu:{}, cpu1:{}, cpu2:{}, cost:{}", cpu, now.performance.cpuTime,
      before.performance.cpuTime, costNs);
  return cpu;
}

void MeetingMonitor::SendTrackList(const std::vector<TrackItem>& items) const {
  send_(JsonText(items));
}

}  // namespace QX_MONITOR
