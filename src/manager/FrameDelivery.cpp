#include "FrameDelivery.h"

#include <array>
#include <memory>
#include <new>
#include <string>

#include "MeetingManager.h"
#include "RavoManager.h"
#include "SubscribeManager.h"
#include "log/IntervalGate.h"
#include "log/LogInstance.h"
#include "slots/StreamDataManager.h"
#include "slots/VideoFrameSlots.h"

namespace TESSARIN_LUMARC {

namespace {

using slots::FrameMeta;
using slots::StreamDataManager;
using slots::StreamInfo;
using slots::VideoFrameSlots;
using TESSARIN_LOG::Log;

constexpr std::int32_t kScreenField = 1;
constexpr std::size_t kPlaneCount = 3;

bool FindScreen(const std::string& uid, StreamInfo& stream) {
  const std::string key = uid + std::string(slots::kScreenSuffix);
  if (StreamDataManager::GetInstance().GetStreamByUid(key, stream) && !stream.sid.empty() && stream.isScreen) {
    return true;
  }
  Log("OnVideoCommonFrame suid screen not find:{}", key);
  return false;
}

bool FindVideo(const std::string& uid, StreamInfo& stream) {
  if (StreamDataManager::GetInstance().GetStreamByUid(uid, stream) && !stream.sid.empty()) return true;
  Log("OnVideoCommonFrame suid not find:{}", uid);
  return false;
}

bool ShowOwnVideo() {
  if (StreamDataManager::GetInstance().GetSelfStreamHasVideo()) return true;
  Log("[STREAM_FRAME] OnVideoFrame warning, self local video is disable, but got rtc self video frame");
  return false;
}

// A frame of a stream that is subscribed without video retires the stream's slot, each time until the client's
// acknowledgement has destroyed it.
bool ShowOthersVideo(VideoFrameSlots& frames, const StreamInfo& stream) {
  if (stream.hasVideo) return true;
  Log("[STREAM_FRAME] OnVideoFrame, streaminfo hasvideo = false, but received frame, sid = {}, uid = {}", stream.sid,
      stream.uid);
  if (!frames.HasSlot(stream.sid)) return false;
  Log("[STREAM_FRAME] OnVideoFrame, has slot, notify remove, sid = {}, uid = {}", stream.sid, stream.uid);
  frames.SetSlotRemoveFlag(stream.sid);
  StreamOnFrameEventShareMemoryUpdate(slots::kShareMemoryRemove,
                                      StreamDataManager::GetInstance().GetShareMemoryInfoBySid(stream.sid));
  return false;
}

bool IsOwn(const std::string& uid) {
  return uid.empty() || RavoManager::GetInstance().Meeting().IsMyUid(uid);
}

// Times above 2147483 ms come out wrapped: the product is taken in 32 bits. Readers compare times of one slot, and
// know.
std::uint32_t SlotTime(std::int64_t renderTimeMs) {
  const auto scaled = static_cast<std::int32_t>(static_cast<std::uint32_t>(renderTimeMs) * 1000u);
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(scaled) / 1000);
}

// The engine's format is not taken over: slots hold one format.
FrameMeta MetaOf(const VideoFrameInfo& info, const std::int64_t* strides) {
  constexpr std::uint32_t kPlanarHalfHeight = 0;
  return {.width = static_cast<std::uint32_t>(info.width),
          .height = static_cast<std::uint32_t>(info.height),
          .stride0 = static_cast<std::uint32_t>(strides[0]),
          .stride1 = static_cast<std::uint32_t>(strides[1]),
          .stride2 = static_cast<std::uint32_t>(strides[2]),
          .rotation = static_cast<std::uint32_t>(info.rotation),
          .flip = info.flip ? 1u : 0u,
          .renderTimeMs = SlotTime(info.renderTimeMs),
          .format = kPlanarHalfHeight,
          .colorSpace = static_cast<std::uint32_t>(info.colorSpace)};
}

void Deliver(const char* uid, const VideoFrameInfo& info, const std::uint8_t* const* planes, std::int32_t planeCount,
             const std::int64_t* strides) {
  static auto* const gate = new TESSARIN_LOG::IntervalGate;
  const bool bScreen = info.field_type == kScreenField;
  if (gate->IsTime()) Log("SubscribeManager::OnVideoCommonFrame uid:{}, bScreen:{}", uid, bScreen);
  const std::shared_ptr<VideoFrameSlots> frames = RavoManager::GetInstance().FrameSlots();
  const std::string user = uid;
  StreamInfo stream;
  if (bScreen) {
    if (!FindScreen(user, stream)) return;
  } else {
    if (!FindVideo(user, stream)) return;
    if (!(IsOwn(user) ? ShowOwnVideo() : ShowOthersVideo(*frames, stream))) return;
  }
  std::array<const std::uint8_t*, kPlaneCount> list{};
  for (std::size_t i = 0; i < kPlaneCount && static_cast<std::int32_t>(i) < planeCount; ++i) list[i] = planes[i];
  frames->UpdateSlot(stream.sid, MetaOf(info, strides), list);
}

}  // namespace

void OnVideoCommonFrame(const char* uid, VideoFrameInfo info, const std::uint8_t* const* planes,
                        std::int32_t planeCount, const std::int64_t* strides) {
  try {
    Deliver(uid, info, planes, planeCount, strides);
  } catch (const std::bad_alloc&) {
    Log("[STREAM_FRAME] no memory for a frame, uid: {}", uid);  // it is lost, and the next one tries again
  }
}

}  // namespace TESSARIN_LUMARC
