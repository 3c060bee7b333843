#include "SubscribeManager.h"

#include <algorithm>
#include <iterator>

#include "RavoManager.h"
#include "RecordArguments.h"
#include "Tables.h"
#include "log/LogInstance.h"
#include "records/StreamRecords.h"
#include "slots/Shm.h"
#include "slots/VideoFrameSlots.h"

namespace TESSARIN_LUMARC {

namespace {

using slots::ShareMemoryInfo;
using TESSARIN_LOG::Level;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::LogAt;
using ShareMemoryList = std::vector<ShareMemoryInfo>;

// What the engine's calls take.
constexpr std::int64_t kAudioAlone = 1;
constexpr std::int64_t kVideo = 2;
constexpr std::int64_t kAudioAndVideo = 3;

// The record of the asking view. It counts only in an array that reaches to its place.
std::string ClientAt(const ContentView& content, std::size_t index) {
  if (content.Size() <= index) return "";
  const ContentView argument = content.Child(index);
  TESSARIN_COMMON::JsonNode node(argument.ValueOrNull());
  SubscribeClient client;
  TESSARIN_COMMON::ReadRecord(node, client);
  return client.subscribeClientId;
}

// Null, with a line in the log, before the server is initialised.
std::shared_ptr<slots::VideoFrameSlots> SlotsOrWarning() {
  auto frames = RavoManager::GetInstance().FrameSlots();
  if (frames == nullptr) {
    LogAt("Ravo", Level::Unexpected, "[STREAM_FRAME] doUpdateShareMemory fail - frame slots is nullptr");
  }
  return frames;
}

// Whether another holder keeps a segment of an earlier run. The segment itself stays.
void ProbeOldSegment(const ShareMemoryInfo& record) {
  shoom::Shm old(record.path,
                 static_cast<std::uint32_t>(record.bufferSize * std::max<std::uint64_t>(record.bufferNumber, 1)));
  if (old.Create(false) == 0) Log("[STREAM_FRAME] found old share memory, path: {}", record.path);
}

}  // namespace

void StreamOnFrameEventShareMemoryUpdate(std::int64_t op, const ShareMemoryList& records) {
  Log("StreamOnFrameEventShareMemoryUpdate op:{}", op);
  RavoManager::GetInstance().SendEvent("shareMemoryUpdate",
                                       EventArguments().Add(op).AddRaw(TESSARIN_COMMON::JsonText(records)).Print());
}

void SubscribeManager::Register() {
  slots::StreamMng::GetInstance().SetEvents(this);
  RegisterAll(StreamEventRows());
  Add(*this, OwnRequests());
}

std::span<const OwnRow<SubscribeManager>> SubscribeManager::OwnRequests() {
  static constexpr OwnRow<SubscribeManager> kRows[] = {
      {"GetSubscribeStatus", &SubscribeManager::GetSubscribeStatus},
      {"SetSubscribeMaxNnumber", &SubscribeManager::SetSubscribeMaxNnumber},  // spelled as clients send it
      {"UnSubscribe", &SubscribeManager::UnSubscribe},
      {"UnSubscribeVideo", &SubscribeManager::UnSubscribeVideo},
      {"SubscribeVideo", &SubscribeManager::SubscribeVideo},
      {"AckShareMemoryUpdate", &SubscribeManager::AckShareMemoryUpdate},
      {"GetShareMemoryInfo", &SubscribeManager::GetShareMemoryInfo},
      {"ClearShareMemory", &SubscribeManager::ClearShareMemory},
  };
  return kRows;
}

void SubscribeManager::ApplyOptions(const TESSARIN_COMMON::ServerOption& option) {
  scheduler_.ApplyOptions(option.subscribeMaxNumber, option.subscribeDebounceTime);
}

void SubscribeManager::GetSubscribeStatus(IPCData& request) {
  ReplyValue(request, scheduler_.GetStatus());
}

void SubscribeManager::SetSubscribeMaxNnumber(IPCData& request) {
  scheduler_.SetMaxNumber(static_cast<std::uint64_t>(request.parsed.Integer(0)));
  ReplyNull(request);
}

// Only answers: a subscription ends by UnSubscribeVideo or with its stream.
void SubscribeManager::UnSubscribe(IPCData& request) {
  ReplyNull(request);
}

void SubscribeManager::UnSubscribeVideo(IPCData& request) {
  Log("SubscribeManager::UnSubscribeVideo");
  scheduler_.subscribe_audio_only(request.parsed.String(0), ClientAt(request.parsed, 1));
  ReplyNull(request);
}

void SubscribeManager::SubscribeVideo(IPCData& request) {
  Log("SubscribeManager::SubscribeVideo");
  const ContentView& content = request.parsed;
  std::string clientId = content.String(4);
  if (clientId.empty()) clientId = ClientAt(content, 3);
  scheduler_.subscribe_video(content.String(0), static_cast<std::uint64_t>(content.Integer(1)), clientId,
                             static_cast<std::uint64_t>(content.Integer(2)));
  ReplyNull(request);
}

// The client has let go of what it was told to: only now a slot may die.
void SubscribeManager::AckShareMemoryUpdate(IPCData& request) {
  Log("DoUpdateShareMemory");
  const auto frames = RavoManager::GetInstance().FrameSlots();
  if (frames == nullptr) Log("DoUpdateShareMemory fail, slots is nullptr");
  const std::int64_t op = request.parsed.Integer(0);
  if (op == slots::kShareMemoryRemove) {
    const ContentView argument = request.parsed.Child(1);
    TESSARIN_COMMON::JsonNode node(argument.ValueOrNull());
    ShareMemoryList records;
    node.Get("", records);
    for (const auto& record : records) frames->DestroySlot(record);
  } else if (op == slots::kShareMemoryClear) {
    frames->DestroyAllSlots();
  }
  ReplyNull(request);
}

void SubscribeManager::GetShareMemoryInfo(IPCData& request) {
  Log("GetShareMemoryInfo");
  const auto frames = SlotsOrWarning();
  if (frames == nullptr) return;
  ShareMemoryList records;
  for (const auto& [sid, entry] : frames->Snapshot()) {
    if (entry.active) records.push_back(entry.info);
  }
  ReplyValue(request, records);
}

// The client's list of an earlier run.
void SubscribeManager::ClearShareMemory(IPCData& request) {
  const auto frames = SlotsOrWarning();
  if (frames == nullptr) return;
  ShareMemoryList records;
  try {
    TESSARIN_COMMON::JsonNode root(request.content);
    root.Get("", records);
  } catch (const std::exception& error) {
    Log("parse obj error: {},{},{}", error.what(), request.message_key, request.taskId);
  }
  Log("[STREAM_FRAME] clearShareMemory - clear share memory size before startup: {}", records.size());
  for (const auto& record : records) ProbeOldSegment(record);
  Log("[STREAM_FRAME] clearShareMemory - DestroyAllSlots");
  frames->DestroyAllSlots();
  ReplyNull(request);
}

// The seven words behind the size are the engine's to choose.
void SubscribeManager::Subscribe(const std::string& sid, bool video, std::int32_t frameRate, std::int32_t width,
                                 std::int32_t height) {
  SubscribeConfig config{.frameRate = frameRate, .width = width, .height = height, .unused = {}};
  std::fill(std::begin(config.unused), std::end(config.unused), -1);
  EngineApi::GetInstance().Subscribe(sid.c_str(), video ? kAudioAndVideo : kAudioAlone, 0, &config);
}

void SubscribeManager::UnsubscribeVideo(const std::string& sid) {
  EngineApi::GetInstance().Unsubscribe(sid.c_str(), kVideo, 0);
}

void SubscribeManager::SubStarted(const std::string& sid, bool video, std::uint64_t index) {
  RavoManager::GetInstance().SendEvent("Server_Sub_Started",
                                       EventArguments().Add(sid).Add(true).Add(video).Add(index).Print());
}

bool SubscribeManager::IsSelfStream(const std::string& sid) {
  return slots::StreamMng::GetInstance().IsSelfStream(sid);
}

void SubscribeManager::FirstFrameReceived(const std::string& sid, std::int32_t streamType) {
  RavoManager::GetInstance().SendEvent("FirstFrameReceived", EventArguments().Add(sid).Add(streamType).Print());
}

void SubscribeManager::FrameStatusChange(const std::string& sid, const std::string& uid, std::int32_t streamType,
                                         std::int32_t status) {
  RavoManager::GetInstance().SendEvent("FrameStatusChange",
                                       EventArguments().Add(sid).Add(uid).Add(streamType).Add(status).Print());
}

void SubscribeManager::MyUidChange(const std::string& uid) {
  RavoManager::GetInstance().SendEvent("MyUidChange", EventArguments().Add(uid).Print());
}

}  // namespace TESSARIN_LUMARC
