// The engine's callbacks of streams and frames. All run on threads of the engine.
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "FrameDelivery.h"
#include "SubscribeManager.h"
#include "Tables.h"
#include "log/LogInstance.h"
#include "records/StreamRecords.h"
#include "slots/StreamDataManager.h"
#include "slots/StreamMng.h"
#include "slots/VideoFrameSlots.h"

namespace TESSARIN_LUMARC {

namespace {

using slots::StreamDataManager;
using slots::StreamMng;
using TESSARIN_LOG::Log;
using TESSARIN_TASK::Location;

constexpr Location kRemovedPlace{"SubscribeManager::StreamRemoved", "src/manager/SubscribeManager:279"};
constexpr Location kAddedPlace{"SubscribeManager::StreamAdded", "src/manager/SubscribeManager:311"};
constexpr Location kSubscribedPlace{"SubscribeManager::StreamSubscribed", "src/manager/SubscribeManager:340"};

constexpr std::int64_t kScreenIndex = 1;

template <class Work>
void PostToScheduler(const Location& place, Work work) {
  auto& server = RavoManager::GetInstance();
  server.Tasks().PostTask(place, [&server, work = std::move(work)] { work(server.Subscriptions().Scheduler()); });
}

// The client hears of the slot's end before it hears of the stream's, and hears it whether or not a slot exists.
void StreamRemoved(const char* uid, const char* sid, std::int64_t streamIndex) {
  PostToScheduler(kRemovedPlace,
                  [id = std::string(sid)](SubscriptionScheduler& scheduler) { scheduler.RemoveStreamAll(id); });
  StreamMng::GetInstance().RemoveStream(sid);
  auto& streams = StreamDataManager::GetInstance();
  StreamOnFrameEventShareMemoryUpdate(slots::kShareMemoryRemove, streams.GetShareMemoryInfoBySid(sid));
  streams.RemoveStream(sid);
  SendArguments("StreamRemoved", uid, sid, streamIndex == kScreenIndex);
}

// A request that overtakes the posted task finds the stream without encodings, and subscribes nothing.
void StreamAdded(const char* uid, const char* sid, std::int64_t streamIndex, const StreamResolution* resolutions,
                 std::int32_t count) {
  Log("StreamAdded uid:{}, sid:{}, stream index:{}", uid, sid, streamIndex);
  const bool isScreen = streamIndex == kScreenIndex;
  std::vector<slots::StreamResolution> list;
  for (std::int32_t i = 0; i < count; ++i) {
    const StreamResolution& r = resolutions[i];
    list.push_back({r.width, r.height, r.maxKbps, r.frameRate, r.scaleMode, r.codecMode});
  }
  PostToScheduler(kAddedPlace, [id = std::string(sid), list](SubscriptionScheduler& scheduler) {
    scheduler.SetStreamResolutions(id, list);
  });
  StreamMng::GetInstance().AddStream(uid, sid, isScreen, list);
  // The table gets no encodings: the scheduler alone uses them.
  StreamDataManager::GetInstance().UpdateStream(
      {.uid = uid, .sid = sid, .hasVideo = true, .hasAudio = true, .isScreen = isScreen, .resolutions = {}});
  SendArguments("StreamAdded", uid, sid, isScreen, resolutions, count);
}

// The video of the stream has ended while the stream goes on: its slot is on the way out.
void RetireSlot(const std::string& sid) {
  const auto records = StreamDataManager::GetInstance().GetShareMemoryInfoBySid(sid);
  const auto frames = RavoManager::GetInstance().FrameSlots();
  if (records.empty() || frames == nullptr || !frames->HasSlot(sid)) return;
  frames->SetSlotRemoveFlag(sid);
  StreamOnFrameEventShareMemoryUpdate(slots::kShareMemoryRemove, records);
}

void StreamSubscribed(std::int64_t state, const char* sid, const SubscribeInfo* info) {
  Log("SubscribeManager::StreamSubscribed");
  SendArguments("StreamSubscribed", state, sid, info);
  PostToScheduler(kSubscribedPlace, [state, id = std::string(sid), answer = *info](SubscriptionScheduler& scheduler) {
    scheduler.OnStreamSubscribedTask(state, id, answer.subscribeVideo, answer.subscribeAudio, answer.videoIndex,
                                     answer.layer);
  });
  if (state == 0 && !info->subscribeVideo) RetireSlot(sid);
  slots::StreamInfo stream;
  auto& streams = StreamDataManager::GetInstance();
  if (!streams.GetStreamBySid(sid, stream)) return;
  stream.hasVideo = info->subscribeVideo;
  stream.hasAudio = info->subscribeAudio;
  stream.isMerge = false;
  streams.UpdateStream(stream);
}

void ServerVideoFrame(const char* uid) {
  StreamMng::GetInstance().handle_server_frame(uid, slots::kVideoStreamType);
}

void ServerScreenFrame(const char* uid) {
  StreamMng::GetInstance().handle_server_frame(uid, slots::kScreenStreamType);
}

constexpr auto kCallbacks =
    EventRows(Own<&EngineApi::OnMultiStreamRemoved, StreamRemoved>("OnMultiStreamRemoved", "StreamRemoved"),
              Own<&EngineApi::OnMultiStreamAdded, StreamAdded>("OnMultiStreamAdded", "StreamAdded"),
              Own<&EngineApi::OnStreamSubscribed, StreamSubscribed>("OnStreamSubscribed", "StreamSubscribed"),
              Plain<&EngineApi::OnLocalVideoSizeChanged, "LocalVideoSizeChanged">("OnLocalVideoSizeChanged"),
              Plain<&EngineApi::OnRemoteVideoSizeChanged, "RemoteVideoSizeChanged">("OnRemoteVideoSizeChanged"),
              Own<&EngineApi::OnServerVideoFrame, ServerVideoFrame>("OnServerVideoFrame",
                                                                    "FirstFrameReceived, FrameStatusChange"),
              Own<&EngineApi::OnServerScreenFrame, ServerScreenFrame>("OnServerScreenFrame",
                                                                      "FirstFrameReceived, FrameStatusChange"),
              Own<&EngineApi::OnVideoCommonFrame, OnVideoCommonFrame>("OnVideoCommonFrame", "shareMemoryUpdate"));
static_assert(kCallbacks.size() == 8);

}  // namespace

std::span<const EventRow> StreamEventRows() {
  return kCallbacks;
}

}  // namespace TESSARIN_LUMARC
