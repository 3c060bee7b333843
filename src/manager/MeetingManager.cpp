#include "MeetingManager.h"

#include "RavoManager.h"
#include "SubscribeManager.h"
#include "Tables.h"
#include "common/JsonNode.h"
#include "ipc/EventArguments.h"
#include "log/LogInstance.h"
#include "power/PowerMonitor.h"
#include "power/PowerSaveBlocker.h"
#include "slots/StreamDataManager.h"
#include "slots/StreamMng.h"

namespace TESSARIN_LUMARC {

namespace {

using slots::StreamDataManager;
using slots::StreamMng;
using TESSARIN_COMMON::JsonWriter;
using TESSARIN_COMMON::ServerOption;
using TESSARIN_LOG::Log;
using TESSARIN_POWER::PowerMonitor;
using TESSARIN_POWER::PowerSaveBlocker;

constexpr std::int64_t kChannelProfile = 16;
constexpr TESSARIN_TASK::Location kLeavePlace{"MeetingManager::LeaveMeeting", "src/manager/MeetingManager"};

// What the engine passes on to the service of the meeting: a JSON text inside a JSON text.
std::string CommonExtraInfo(const ServerOption& option) {
  JsonWriter info;
  info.StartObject();
  info.Add("app_version", option.appVersion);
  info.Add("service_type", "live");
  info.Add("is_oversea", option.vendorTypeConfig.isMediaOversea ? "1" : "0");
  info.EndObject();
  JsonWriter outer;
  outer.StartObject();
  outer.Add("rtc.common_extra_info", info.Text());
  outer.EndObject();
  return outer.Text();
}

// A count that clients may send along. It is checked like any argument and has no effect.
void ReadAutoSubscribeCount(const ContentView& content) {
  constexpr std::size_t kPlace = 5;
  if (content.Size() <= kPlace) return;
  const ContentView last = content.Child(kPlace);
  TESSARIN_COMMON::JsonNode node(last.ValueOrNull());
  std::int64_t autoSubscribeVideoCount = 0;
  node.Get("autoSubscribeVideoCount", autoSubscribeVideoCount);
}

void AnnounceRemoval(const std::string& sid) {
  StreamOnFrameEventShareMemoryUpdate(slots::kShareMemoryRemove,
                                      StreamDataManager::GetInstance().GetShareMemoryInfoBySid(sid));
}

void SendPreviewStatus(bool on) {
  RavoManager::GetInstance().SendEvent("LocalPreviewStatus",
                                       TESSARIN_COMMON::EventArguments().Add(on).Add(true).Print());
}

}  // namespace

MeetingManager::MeetingManager()
    : joinTimer_(RavoManager::GetInstance().Timers(),
                 [] { RavoManager::GetInstance().Monitor().ReportJoinTimeout(); }) {
  ListenToPower();
}

void MeetingManager::Register() {
  RegisterAll(MeetingEventRows());
  Add(MeetingRequestRows());
  Add(*this, OwnRequests());
}

std::span<const OwnRow<MeetingManager>> MeetingManager::OwnRequests() {
  static constexpr OwnRow<MeetingManager> kRows[] = {
      {"JoinMeeting", &MeetingManager::JoinMeeting},
      {"LeaveMeeting", &MeetingManager::LeaveMeeting},
      {"EnableLocalVideo", &MeetingManager::EnableLocalVideo},
      {"StartPreview", &MeetingManager::StartPreview},
      {"StopPreview", &MeetingManager::StopPreview},
      {"StartPowerMonitor", &MeetingManager::StartPowerMonitor},
      {"StartPreventDisplaySleep", &MeetingManager::StartPreventDisplaySleep},
  };
  return kRows;
}

ServerState MeetingManager::State() const {
  ServerState state;
  {
    const std::lock_guard lock(uidMutex_);
    state.myUid = myUid_;
  }
  state.isJoinMeeting = isJoinMeeting_;
  state.roomId = roomId_;
  state.isEnableLocalVideo = isEnableLocalVideo_;
  state.isStartPreview = isStartPreview_;
  state.dynamicLayoutPerfEnable = dynamicLayoutPerfEnable_;
  return state;
}

bool MeetingManager::IsMyUid(std::string_view uid) const {
  const std::lock_guard lock(uidMutex_);
  return uid == myUid_;
}

// The reply first, the local state after it, whatever the engine returned: a client whose join was refused leaves.
void MeetingManager::JoinMeeting(IPCData& request) {
  Log("ravo joinRoom...");
  const ServerOption option = RavoManager::GetInstance().Options();
  const std::string token = request.parsed.String(0);
  const std::string roomId = request.parsed.String(1);
  const std::string uid = request.parsed.String(2);
  const std::string extraInfo = request.parsed.String(3);
  const auto& api = EngineApi::GetInstance();
  api.SetRtcRuntimeParameter("", CommonExtraInfo(option).c_str());
  ReadAutoSubscribeCount(request.parsed);
  const JoinUser user{uid.c_str(), extraInfo.c_str()};
  const JoinRoomOption room{kChannelProfile, 0, true, true, false};
  ReplyValue(request, api.JoinRoom(token.c_str(), roomId.c_str(), &user, &room));
  EnterJoining(uid, roomId);
}

void MeetingManager::EnterJoining(const std::string& uid, const std::string& roomId) {
  StreamMng::GetInstance().SetMyUid(uid);
  {
    const std::lock_guard lock(uidMutex_);
    myUid_ = uid;
  }
  roomId_ = roomId;
  isJoinMeeting_ = true;
  joinTimer_.Start();
  auto& streams = StreamDataManager::GetInstance();
  streams.AddSelfUid(uid);
  streams.RemovePreviewStream();  // retired with the join, while the capture goes on
  AnnounceRemoval(streams.GetPreviewSid());
}

void MeetingManager::JoinSucceeded(const std::string& roomId, const std::string& uid, std::int64_t elapsed) {
  if (!isJoinMeeting_) {
    Log("[JoinChannelSuccess] isJoinMeeting is false, so return");
    return;
  }
  const std::int64_t costMs = joinTimer_.ElapsedMs();
  auto& server = RavoManager::GetInstance();
  server.SendEvent("JoinChannelSuccess", TESSARIN_COMMON::EventArguments().Add(roomId).Add(uid).Add(elapsed).Print());
  StreamMng::GetInstance().StartFrameCheck(server.Timers());
  joinTimer_.Stop();
  server.Monitor().ReportJoinCost(costMs);
  server.Monitor().StartMeetingSnapshot(server.Options().enableAutoMonitor);
}

void MeetingManager::LeaveMeeting(IPCData& request) {
  auto& server = RavoManager::GetInstance();
  EngineApi::GetInstance().LeaveRoom();
  ReplyNull(request);
  server.SendEvent("LeaveMeetingSuccess", "[]");  // our own word; the engine has none for it
  StreamMng::GetInstance().StopFrameCheck(server.Timers());
  server.Monitor().StopMeetingSnapshot();
  joinTimer_.Stop();
  isJoinMeeting_ = false;
  // What was changed for this meeting ends with it.
  server.Tasks().PostTask(kLeavePlace, [&server] { server.Subscriptions().ApplyOptions(server.Options()); });
  StreamDataManager::GetInstance().ClearAllStreams();
}

// The client drops its own slot on every switch, off and on; the next frame brings a new one.
void MeetingManager::EnableLocalVideo(IPCData& request) {
  isEnableLocalVideo_ = request.parsed.Boolean(0);
  ReplyValue(request, EngineApi::GetInstance().EnableLocalVideo(isEnableLocalVideo_));
  auto& streams = StreamDataManager::GetInstance();
  streams.SetSelfStreamHasVideo(isStartPreview_ || isEnableLocalVideo_);
  const std::string sid = streams.GetSelfSid();
  if (sid.empty()) return;
  Log("[STREAM] notify self stream ShareMemoryUpdate REMOVE - m_SelfSid_:{}", sid);
  if (const auto frames = RavoManager::GetInstance().FrameSlots()) frames->SetSlotRemoveFlag(sid);
  AnnounceRemoval(sid);
}

void MeetingManager::StartPreview(IPCData& request) {
  EngineApi::GetInstance().StartVideoCapture();
  SendPreviewStatus(true);
  ReplyNull(request);
  isStartPreview_ = true;
  auto& streams = StreamDataManager::GetInstance();
  streams.AddPreviewStream();
  streams.SetSelfStreamHasVideo(true);
}

void MeetingManager::StopPreview(IPCData& request) {
  EngineApi::GetInstance().StopVideoCapture();
  SendPreviewStatus(false);
  ReplyNull(request);
  isStartPreview_ = false;
  auto& streams = StreamDataManager::GetInstance();
  streams.RemovePreviewStream();
  AnnounceRemoval(streams.GetPreviewSid());
  streams.SetSelfStreamHasVideo(isEnableLocalVideo_);
}

void MeetingManager::StartPowerMonitor(IPCData& request) {
  PowerMonitor::GetInstance().StartWatch(static_cast<std::int32_t>(request.parsed.Integer(0)));
  ReplyNull(request);
}

// Whether it works is in the log alone. Nothing takes it back: it ends with the process.
void MeetingManager::StartPreventDisplaySleep(IPCData& request) {
  PowerSaveBlocker::GetInstance().StartPreventDisplaySleep();
  ReplyNull(request);
}

}  // namespace TESSARIN_LUMARC
