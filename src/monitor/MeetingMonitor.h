#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "common/Fields.h"

namespace QX_MONITOR {

// One named payload for the analytics of the client; the value is JSON text.
struct TrackItem {
  std::string key;
  std::string value;
};

// Reports the server's own costs to the client and knows the processes of the meeting. Any thread may call.
class MeetingMonitor {
 public:
  // Takes the items as the JSON array that the event "MeriTrackList" carries. Called with no lock held.
  using SendTracks = std::function<void(const std::string& itemsJson)>;

  explicit MeetingMonitor(SendTracks send) : send_(std::move(send)) {}

  void AddMonitorInfo(std::int64_t pid, const std::string& pname);

  // A request that held up the runner.
  void ReportFunctionCost(const std::string& name, std::int64_t costMs) const;
  // A cost that is not above 0 is dropped.
  void ReportJoinCost(std::int64_t costMs) const;
  void ReportJoinTimeout() const;

  void SendTrackList(const std::vector<TrackItem>& items) const;

 private:
  const SendTracks send_;
  std::mutex mutex_;  // guards processes_
  std::map<std::int64_t, std::string> processes_;
};

}  // namespace QX_MONITOR

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<QX_MONITOR::TrackItem> = Fields(Field{"key", &QX_MONITOR::TrackItem::key},
                                                              Field{"value", &QX_MONITOR::TrackItem::value});

}  // namespace TESSARIN_COMMON
