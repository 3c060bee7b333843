#include "MeetingMonitor.h"

#include "common/JsonWriter.h"
#include "log/LogInstance.h"

namespace QX_MONITOR {

namespace {

using TESSARIN_COMMON::JsonText;
using TESSARIN_COMMON::JsonWriter;

constexpr const char* kCostKey = "vc_meeting_pcsdk_server_cost_time";

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

}  // namespace

void MeetingMonitor::AddMonitorInfo(std::int64_t pid, const std::string& pname) {
  TESSARIN_LOG::Log("[AddMonitorInfo] pid:{}, pname:{}", pid, pname);
  const std::lock_guard lock(mutex_);
  processes_[pid] = pname;
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

void MeetingMonitor::SendTrackList(const std::vector<TrackItem>& items) const {
  send_(JsonText(items));
}

}  // namespace QX_MONITOR
