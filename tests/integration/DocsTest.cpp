// docs/protocol.md against the tables in the code, both ways.
#include <gmock/gmock.h>

#include <set>

#include "Contract.h"
#include "ipc/IPCData.h"
#include "manager/MeetingManager.h"
#include "manager/RavoManager.h"
#include "manager/ScreenManager.h"
#include "manager/ServerState.h"
#include "manager/SubscribeManager.h"
#include "manager/Tables.h"
#include "manager/records/MeetingRecords.h"
#include "manager/records/ScreenRecords.h"
#include "manager/records/StreamRecords.h"
#include "monitor/MeetingMonitor.h"

namespace integration {
namespace {

using namespace TESSARIN_LUMARC;

template <class... Lists>
std::vector<std::string> MethodsOf(const Lists&... lists) {
  std::vector<std::string> methods;
  const auto add = [&](const auto& rows) {
    for (const auto& row : rows) methods.emplace_back(row.method);
  };
  (add(lists), ...);
  return methods;
}

TEST(Docs, NameEveryMethodOnce) {
  const auto methods =
      MethodsOf(RavoManager::OwnRequests(), MeetingRequestRows(), MeetingManager::OwnRequests(), ScreenRequestRows(),
                ScreenManager::OwnRequests(), DeviceRequestRows(), SubscribeManager::OwnRequests());
  std::vector<std::string> documented;
  for (const auto& method : DocumentedMethods()) documented.push_back(method.name);
  EXPECT_THAT(documented, testing::UnorderedElementsAreArray(methods));
}

TEST(Docs, NameEveryEventWithItsKeyAndTheCallbackBehindIt) {
  using Pair = std::pair<std::string, std::string>;  // the callback and the event
  const std::set<std::string> methods{"JoinMeeting", "LeaveMeeting", "StartPreview", "StopPreview"};
  std::set<Pair> documented;
  for (const auto& event : DocumentedEvents()) {
    const bool isSession = event.name == "connect" || event.name == "INIT";
    EXPECT_EQ(event.key, isSession ? event.name : TESSARIN_COMMON::EventNameToMessageKey(event.name));
    for (const auto& source : event.sources) {
      if (!methods.contains(source)) documented.emplace(source, event.name);
    }
  }
  std::set<Pair> registered;
  for (const auto rows : {DeviceEventRows(), MeetingEventRows(), ScreenEventRows(), StreamEventRows()}) {
    for (const auto& row : rows) {
      for (const auto& event : Split(row.event, ", ")) registered.emplace(row.registration, event);
    }
  }
  EXPECT_EQ(documented, registered);
}

// The members of each record, in their order.
template <class... Records>
auto MembersOf() {
  std::vector<std::vector<std::string>> all;
  const auto add = [&]<class Type>(std::type_identity<Type>) {
    auto& members = all.emplace_back();
    TESSARIN_COMMON::ForEachField<Type>([&](const auto& field) { members.emplace_back(field.name); });
  };
  (add(std::type_identity<Records>()), ...);
  return all;
}

TEST(Docs, ListTheMembersOfEveryRecordInTheirOrder) {
  // In the order of the documents.
  const auto written =
      MembersOf<ServerInformation, ServerState, slots::StreamStateRecord, DeviceGroup, SubscribeStatus, SubscribeItem,
                ProcessRecord, StreamResolution, SubscribeInfo, SubscribeClient, slots::ShareMemoryInfo, VideoFrameInfo,
                RemoteStreamKey, Channel, OutputMode, LocalQuality, RemoteQuality, VolumeInfo, LocalVolumeInfo,
                SysStats, BandwidthEstimation, DevicePerformance, QX_MONITOR::TrackItem, DeviceInfo, IgnoreWindowParam,
                WindowHandle, ThumbnailSize, ResolutionLimit, ScreenCaptureConfig, VideoCaptureConfig, ScreenRect,
                DesktopInfo, WindowRecord, ThumbnailRecord>();
  const auto documented = DocumentedRecords();
  ASSERT_EQ(documented.size(), written.size());
  for (std::size_t i = 0; i < written.size(); ++i) {
    std::vector<std::string> names;
    for (const auto& member : documented[i].members) names.push_back(member.first);
    EXPECT_EQ(names, written[i]) << documented[i].name;
  }
}

}  // namespace
}  // namespace integration
