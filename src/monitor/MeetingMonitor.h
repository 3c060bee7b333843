#pragma once

#include <ravo/engine_records.h>
#include <ravo/ravo.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "common/Clock.h"
#include "common/Fields.h"
#include "task/TimerTaskRunner.h"

namespace QX_MONITOR {

// One named payload for the analytics of the client; the value is JSON text.
struct TrackItem {
  std::string key;
  std::string value;
};

// Where the monitor reads the load of processes.
class ProcessSampler {
 public:
  virtual ~ProcessSampler() = default;
  [[nodiscard]] virtual ProcessPerformance Sample(std::uint32_t processId) = 0;

  static ProcessSampler& System();
};

// Reports the server's own costs and the load of the meeting's processes to the client. Any thread may call.
class MeetingMonitor {
 public:
  // Takes the items as the JSON array that the event "MeriTrackList" carries. Called with no lock held.
  using SendTracks = std::function<void(const std::string& itemsJson)>;

  MeetingMonitor(SendTracks send, TESSARIN_TASK::TimerTaskRunner& timers,
                 ProcessSampler& sampler = ProcessSampler::System(),
                 const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());

  // A process to watch from now on, also after its end.
  void AddMonitorInfo(std::int64_t pid, const std::string& pname);

  // What the start of the server took, with what the engine and the system tell of the machine, which is kept.
  void ReportInitCost(std::int64_t costMs, const DevicePerformance& machine);
  // A request that held up the runner.
  void ReportFunctionCost(const std::string& name, std::int64_t costMs) const;
  // A cost that is not above 0 is dropped.
  void ReportJoinCost(std::int64_t costMs) const;
  void ReportJoinTimeout() const;

  // Samples the watched processes now and then every ten minutes. A process is reported from its second sample on, with
  // its load since the one before. A start without a stop leaves the earlier timer running with nobody to cancel it.
  void StartMeetingSnapshot(bool enabled);
  // The samples stay: the next meeting compares with the last of this one. Not with a lock that a send may need.
  void StopMeetingSnapshot();

  void SendTrackList(const std::vector<TrackItem>& items) const;

 private:
  struct Sample {
    ProcessPerformance performance;
    std::int64_t takenNs;  // steady
  };

  void handle_join_meeting_monitor();
  [[nodiscard]] std::map<std::int64_t, std::string> Processes() const;
  [[nodiscard]] bool TakeSample(std::int64_t pid, Sample& sample);
  [[nodiscard]] double CpuPercent(const Sample& before, const Sample& now) const;

  const SendTracks send_;
  TESSARIN_TASK::TimerTaskRunner& timers_;
  ProcessSampler& sampler_;
  const TESSARIN_COMMON::Clock& clock_;

  mutable std::mutex mutex_;  // guards processes_
  std::map<std::int64_t, std::string> processes_;

  std::mutex snapshotMutex_;  // guards what follows; taken before mutex_
  DevicePerformance machine_{};
  std::map<std::int64_t, Sample> formerSamples_;
  std::int32_t snapshotTimerId_ = 0;
};

}  // namespace QX_MONITOR

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<QX_MONITOR::TrackItem> = Fields(Field{"key", &QX_MONITOR::TrackItem::key},
                                                              Field{"value", &QX_MONITOR::TrackItem::value});

}  // namespace TESSARIN_COMMON
