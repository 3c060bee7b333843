#include <string>
#include <string_view>

#include "Events.h"
#include "InsertionMap.h"
#include "MeetingManager.h"
#include "Tables.h"
#include "TextOrEmpty.h"
#include "common/Clock.h"
#include "common/JsonWriter.h"
#include "log/LogInstance.h"
#include "power/PowerMonitor.h"
#include "records/MeetingRecords.h"
#include "records/StreamRecords.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_LOG::Log;

constexpr TESSARIN_TASK::Location kPowerPlace{"MeetingManager::PowerCallback", "src/manager/MeetingManager"};
constexpr TESSARIN_TASK::Location kJoinPlace{"MeetingManager::JoinChannelSuccess", "src/manager/MeetingManager"};

void MyUidChange(const char* uid) {
  Log("MyUidChange arg:{}", TextOrEmpty(uid));
  SendArguments("MyUidChange", uid);
}

// The success is handled on "main_thread", behind the request that caused it.
void JoinChannelSuccess(const char* roomId, const char* uid, std::int64_t elapsed) {
  Log("JoinChannelSuccess arg1:{}", TextOrEmpty(roomId));
  auto& server = RavoManager::GetInstance();
  server.Tasks().PostTask(kJoinPlace, [&server, room = TextOrEmpty(roomId), user = TextOrEmpty(uid), elapsed] {
    server.Meeting().JoinSucceeded(room, user, elapsed);
  });
}

// The kind alone decides. A rejoin changes nothing here and is told even after the client has left.
void RoomStateChanged(const char* roomId, const char* uid, std::int64_t /*state*/, std::intptr_t /*reserved*/,
                      std::int64_t kind, std::int64_t elapsed) {
  constexpr std::int64_t kJoined = 1;
  constexpr std::int64_t kRejoined = 2;
  if (kind == kJoined) JoinChannelSuccess(roomId, uid, elapsed);
  if (kind == kRejoined) SendArguments("RejoinChannelSuccess", roomId, uid, elapsed);
}

void ReceivedRoomBinaryMessage(const std::uint8_t* /*message*/, std::int64_t sizeBytes) {
  SendArguments("RoomBinaryMessageReceived", sizeBytes);
}

void ReceivedUserBinaryMessage(const char* uid, const std::uint8_t* /*message*/, std::int64_t sizeBytes) {
  SendArguments("UserBinaryMessageReceived", uid, sizeBytes);
}

void ReceivedUserMessage(const char* /*uid*/, const char* /*message*/) {}  // wanted: it gives no event

// Only the main stream counts; screens are the scheduler's.
void SendPublishing(const RemoteStreamKey& key, std::int64_t media, std::int64_t gone) {
  constexpr std::int64_t kAudio = 1;
  constexpr std::int64_t kVideo = 2;
  constexpr std::int64_t kBoth = 3;
  if (key.streamIndex != 0) return;
  if (media == kAudio || media == kBoth) SendArguments("UserAudioChange", key.userId, gone);
  if (media == kVideo || media == kBoth) SendArguments("UserVideoChange", key.userId, gone);
}

void UserPublishStream(const RemoteStreamKey* key, std::int64_t /*reserved*/, std::int64_t media) {
  SendPublishing(*key, media, 0);
}

void UserUnpublishStream(const RemoteStreamKey* key, std::int64_t media) {
  SendPublishing(*key, media, 1);
}

void VemoraException(const char* text) {
  TESSARIN_COMMON::JsonWriter writer;
  writer.Add(nullptr, text);
  RavoManager::GetInstance().SendEvent("OnVemoraException", EventArguments().AddRaw(writer.Text()).Print());
}

// A tracking event of the engine, as a list of one record. The time is ours; of pairs with one key the first stands.
std::string TrackListText(const MeriTrackPair* pairs, std::int32_t count) {
  std::string meetingId;
  InsertionMap<std::string> content;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string_view key = pairs[i].key;
    if (key == "meeting_id") {
      meetingId = pairs[i].value;
    } else if (key != "timestamp" && !content.Contains(key)) {
      content[std::string(key)] = pairs[i].value;
    }
  }
  TESSARIN_COMMON::JsonWriter writer;
  writer.StartArray();
  writer.StartObject();
  writer.Add("meeting_id", meetingId);
  writer.Add("timestamp", TESSARIN_COMMON::Clock::System().WallMs());
  writer.StartObject("perf_content");
  for (const auto& [key, value] : content) writer.Add(key.c_str(), value);
  writer.EndObject();
  writer.EndObject();
  writer.EndArray();
  return writer.Text();
}

void UlvoMeriTrack(const char* event, const MeriTrackPair* pairs, std::int32_t count) {
  RavoManager::GetInstance().Monitor().SendTrackList({{event, TrackListText(pairs, count)}});
}

constexpr auto kEvents = EventRows(
    Plain<&EngineApi::OnRtcSdkInit, "RtcSdkInit">("OnRtcSdkInit"),
    Own<&EngineApi::OnMyUidChange, MyUidChange>("OnMyUidChange", "MyUidChange"),
    Plain<&EngineApi::OnUserJoin, "UserJoin">("OnUserJoin"), Plain<&EngineApi::OnUserLeave, "UserLeave">("OnUserLeave"),
    Own<&EngineApi::OnRoomStateChanged, RoomStateChanged>("OnRoomStateChanged",
                                                          "JoinChannelSuccess, RejoinChannelSuccess"),
    Plain<&EngineApi::OnAudioRecordFormat, "AudioRecordFormat">("OnAudioRecordFormat"),
    Plain<&EngineApi::OnNetworkQuality, "NetworkQuality">("OnNetworkQuality"),
    Plain<&EngineApi::OnNetworkTypeChanged, "NetworkTypeChanged">("OnNetworkTypeChanged"),
    Plain<&EngineApi::OnConnectionStateChanged, "ConnectionStateChanged">("OnConnectionStateChanged"),
    Plain<&EngineApi::OnAudioVolumeIndication, "AudioVolumeChange">("OnAudioVolumeIndication"),
    Plain<&EngineApi::OnFirstLocalVideoFrameCaptured, "FirstLocalVideoFrameCaptured">("OnFirstLocalVideoFrameCaptured"),
    Plain<&EngineApi::OnFirstRemoteVideoFrameDecoded, "FirstRemoteVideoFrameDecoded">("OnFirstRemoteVideoFrameDecoded"),
    Plain<&EngineApi::OnFirstRemoteAudioFrame, "FirstRemoteAudioFrame">("OnFirstRemoteAudioFrame"),
    Plain<&EngineApi::OnLocalAudioVolumeIndication, "LocalAudioVolumeIndication">("OnLocalAudioVolumeIndication"),
    Plain<&EngineApi::OnLocalVideoStateChanged, "OnLocalVideoStateChanged">("OnLocalVideoStateChanged"),
    Plain<&EngineApi::OnLocalAudioStateChanged, "OnLocalAudioStateChanged">("OnLocalAudioStateChanged"),
    Plain<&EngineApi::OnVolumeChange, "OnVolumeChange">("OnVolumeChange"),
    Own<&EngineApi::OnVemoraException, VemoraException>("OnVemoraException", "OnVemoraException"),
    Own<&EngineApi::OnUlvoMeriTrack, UlvoMeriTrack>("OnUlvoMeriTrack", "MeriTrackList"),
    Own<&EngineApi::RoomBinaryMessageReceived, ReceivedRoomBinaryMessage>("RoomBinaryMessageReceived",
                                                                          "RoomBinaryMessageReceived"),
    Own<&EngineApi::UserBinaryMessageReceived, ReceivedUserBinaryMessage>("UserBinaryMessageReceived",
                                                                          "UserBinaryMessageReceived"),
    Own<&EngineApi::UserMessageReceived, ReceivedUserMessage>("UserMessageReceived", ""),
    Plain<&EngineApi::OnRtcDestroyStart, "RtcDestroyStart">("OnRtcDestroyStart"),
    Plain<&EngineApi::OnRtcDestroyFinish, "RtcDestroyFinish">("OnRtcDestroyFinish"),
    Plain<&EngineApi::OnLoginResult, "OnLoginResult">("OnLoginResult"),
    Plain<&EngineApi::OnServerParamsSetResult, "OnServerParamsSetResult">("OnServerParamsSetResult"),
    Plain<&EngineApi::OnServerMessageSendResult, "OnServerMessageSendResult">("OnServerMessageSendResult"),
    Plain<&EngineApi::OnLogOut, "OnLogout">("OnLogOut"), Plain<&EngineApi::OnSysStats, "OnSysStats">("OnSysStats"),
    Own<&EngineApi::OnUserPublishStream, UserPublishStream>("OnUserPublishStream", "UserAudioChange, UserVideoChange"),
    Own<&EngineApi::OnUserUnpublishStream, UserUnpublishStream>("OnUserUnpublishStream",
                                                                "UserAudioChange, UserVideoChange"),
    Plain<&EngineApi::OnNetworkBandwidthEstimationResult, "NetworkBandwidthEstimation">(
        "OnNetworkBandwidthEstimationResult"),
    Plain<&EngineApi::OnAudioPlaybackDeviceTestVolume, "OnAudioPlaybackDeviceTestVolume">(
        "OnAudioPlaybackDeviceTestVolume"));
static_assert(kEvents.size() == 33);

// Power callbacks come on threads that must not wait for a client; the event leaves from "main_thread".
template <class... A>
std::function<void(A...)> PostedEvent(const char* event) {
  return [event](A... arguments) {
    RavoManager::GetInstance().Tasks().PostTask(kPowerPlace, [=] { SendArguments(event, arguments...); });
  };
}

}  // namespace

std::span<const EventRow> MeetingEventRows() {
  return kEvents;
}

void ListenToPower() {
  TESSARIN_POWER::PowerMonitor::GetInstance().SetCallbacks(
      {.saverChange = PostedEvent<bool>("BatterySavingModeChange"),
       .mainsChange = PostedEvent<bool>("PowerSourceChangeToAc"),
       .remainingChange = PostedEvent<std::int64_t>("PowerRemainChange"),
       .resume = PostedEvent<>("SystemResumeEvent"),
       .suspend = PostedEvent<>("SystemSuspendEvent")});
}

}  // namespace TESSARIN_LUMARC
