#include "Stand.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <sstream>

namespace stand {
namespace {

constexpr std::size_t kKeptFrames = 200;

struct Store {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::string> events;
  std::deque<Frame> frames;

  template <class Condition>
  bool Wait(Condition condition) {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::milliseconds(kBoundMs), condition);
  }
};

Store& TheStore() {
  static auto* const store = new Store;
  return *store;
}

template <class... Parts>
void Keep(const Parts&... parts) {
  std::ostringstream text;
  const char* separator = "";
  ((text << separator << parts, separator = " "), ...);
  Store& store = TheStore();
  {
    const std::lock_guard lock(store.mutex);
    store.events.push_back(text.str());
  }
  store.changed.notify_all();
}

void KeepFrame(const char* userId, VideoFrameInfo info, const std::uint8_t* const* planes, std::int32_t count,
               const std::int64_t* strides) {
  Frame frame{userId, info, {}, {strides, strides + count}};
  for (int i = 0; i < count; ++i) {
    const std::int64_t rows = i == 0 ? info.height : (info.height + 1) / 2;
    frame.planes.emplace_back(planes[i], planes[i] + rows * strides[i]);
  }
  Store& store = TheStore();
  {
    const std::lock_guard lock(store.mutex);
    store.frames.push_back(std::move(frame));
    if (store.frames.size() > kKeptFrames) store.frames.pop_front();
  }
  store.changed.notify_all();
}

std::string Names(std::int32_t count, const DeviceInfo* list) {
  std::string names = "[";
  for (int i = 0; i < count; ++i) names += std::string(i == 0 ? "" : ",") + list[i].deviceId;
  return names + "]";
}

int CountLocked(const std::string& event) {
  return static_cast<int>(std::ranges::count(TheStore().events, event));
}

void RegisterMeeting() {
  OnRtcSdkInit([] { Keep("OnRtcSdkInit"); });
  OnUserJoin([](const char* uid, std::int64_t value) { Keep("OnUserJoin", uid, value); });
  OnUserLeave([](const char* uid, std::int64_t value) { Keep("OnUserLeave", uid, value); });
  OnRoomStateChanged([](const char* room, const char* uid, std::int64_t, std::intptr_t, std::int64_t kind,
                        std::int64_t) { Keep("OnRoomStateChanged", room, uid, kind); });
  OnNetworkQuality([](const LocalQuality* local, const RemoteQuality* remotes, std::int32_t count) {
    Keep("OnNetworkQuality", local->uid, local->downlink_quality, count, remotes[count - 1].uid);
  });
  OnUserPublishStream([](const RemoteStreamKey* key, std::int64_t, std::int64_t media) {
    Keep("OnUserPublishStream", key->roomId, key->userId, key->streamIndex, media);
  });
  OnAudioVolumeIndication([](const VolumeInfo* volumes, std::int32_t count, std::int64_t loudest, std::int64_t) {
    for (int i = 0; i < count; ++i) {
      if (volumes[i].volume == loudest) Keep("OnAudioVolumeIndication", volumes[i].uid);
    }
  });
  OnLocalAudioVolumeIndication(
      [](const LocalVolumeInfo* own) { Keep("OnLocalAudioVolumeIndication", own->uid, own->volume > 0); });
  OnSysStats([](const SysStats* stats) { Keep("OnSysStats", stats->cpu_cores); });
  OnNetworkBandwidthEstimationResult([](const BandwidthEstimation*) { Keep("OnNetworkBandwidthEstimationResult"); });
  OnServerVideoFrame([](const char* uid) { Keep("OnServerVideoFrame", uid); });
  OnServerScreenFrame([](const char* uid) { Keep("OnServerScreenFrame", uid); });
  OnVideoCommonFrame(&KeepFrame);
  RoomBinaryMessageReceived([](const std::uint8_t*, std::int64_t size) { Keep("RoomBinaryMessageReceived", size); });
  OnUlvoMeriTrack([](const char* event, const MeriTrackPair* pairs, std::int32_t count) {
    Keep("OnUlvoMeriTrack", event, count, pairs[0].key, pairs[0].value);
  });
}

void RegisterStreams() {
  OnMultiStreamAdded([](const char* uid, const char* sid, std::int64_t index, const StreamResolution* resolutions,
                        std::int32_t count) {
    Keep("OnMultiStreamAdded", uid, sid, index, count, resolutions[count - 1].width, resolutions[count - 1].height,
         resolutions[count - 1].frameRate);
  });
  OnMultiStreamRemoved(
      [](const char* uid, const char* sid, std::int64_t index) { Keep("OnMultiStreamRemoved", uid, sid, index); });
  OnStreamSubscribed([](std::int64_t state, const char* sid, const SubscribeInfo* info) {
    Keep("OnStreamSubscribed", state, sid, info->subscribeVideo, info->subscribeAudio, info->videoIndex);
  });
  OnRemoteVideoSizeChanged([](const RemoteStreamKey* key, VideoFrameInfo info) {
    Keep("OnRemoteVideoSizeChanged", key->userId, info.width, info.height);
  });
  OnFirstRemoteVideoFrameDecoded([](const RemoteStreamKey* key, VideoFrameInfo info) {
    Keep("OnFirstRemoteVideoFrameDecoded", key->userId, info.width, info.height);
  });
}

void RegisterDevices() {
  OnDeviceAdded([](std::int64_t type, std::int32_t count1, const DeviceInfo* list1, std::int32_t count2,
                   const DeviceInfo* list2, std::int32_t count3, const DeviceInfo* list3) {
    Keep("OnDeviceAdded", type, Names(count1, list1), Names(count2, list2), Names(count3, list3));
  });
  OnDeviceRemoved([](std::int64_t type, std::int32_t count1, const DeviceInfo* list1, std::int32_t, const DeviceInfo*,
                     std::int32_t, const DeviceInfo*) { Keep("OnDeviceRemoved", type, Names(count1, list1)); });
  OnDeviceSetSuccess(
      [](std::int64_t type, const char* id, bool flag1, bool) { Keep("OnDeviceSetSuccess", type, id, flag1); });
  OnDeviceChange([](DeviceInfo device, bool) { Keep("OnDeviceChange", device.deviceId); });
  OnPlaybackVolumeChange([](std::int64_t volume) { Keep("OnPlaybackVolumeChange", volume); });
  OnRecordingMuteStateChange([](bool mute) { Keep("OnRecordingMuteStateChange", mute); });
  OnDesktopThumbnail([](const Thumbnail* thumbnails, std::int32_t count) {
    Keep("OnDesktopThumbnail", count, thumbnails[0].id, thumbnails[0].val);
  });
  OnSystemDefaultDeviceChange([](std::int64_t type, DeviceInfo before, DeviceInfo after) {
    Keep("OnSystemDefaultDeviceChange", type, before.deviceId, after.deviceId);
  });
  OnScreenCaptureStatus([](std::int64_t state, std::int64_t id, std::int64_t channel) {
    Keep("OnScreenCaptureStatus", state, id, channel);
  });
  OnShareWindowChanged([](std::int64_t id, std::int64_t state, std::int64_t channel) {
    Keep("OnShareWindowChanged", id, state, channel);
  });
  OnAudioCapturerStart([] { Keep("OnAudioCapturerStart"); });
  OnAudioCapturerStop([] { Keep("OnAudioCapturerStop"); });
  OnScreenCaptureStartResult([](std::int64_t result) { Keep("OnScreenCaptureStartResult", result); });
}

}  // namespace

void Clear() {
  const std::lock_guard lock(TheStore().mutex);
  TheStore().events.clear();
  TheStore().frames.clear();
}

std::vector<std::string> Events() {
  const std::lock_guard lock(TheStore().mutex);
  return TheStore().events;
}

int Count(const std::string& event) {
  const std::lock_guard lock(TheStore().mutex);
  return CountLocked(event);
}

bool WaitFor(const std::string& event, int times) {
  return TheStore().Wait([&] { return CountLocked(event) >= times; });
}

std::string WaitForPrefix(const std::string& prefix) {
  std::string found;
  TheStore().Wait([&] {
    for (const auto& event : TheStore().events) {
      if (event.starts_with(prefix)) found = event;
    }
    return !found.empty();
  });
  return found;
}

std::vector<Frame> Frames(const std::string& userId) {
  const std::lock_guard lock(TheStore().mutex);
  std::vector<Frame> frames;
  std::ranges::copy_if(TheStore().frames, std::back_inserter(frames),
                       [&](const Frame& frame) { return frame.userId == userId; });
  return frames;
}

bool WaitForFrames(const std::string& userId, std::size_t count) {
  return TheStore().Wait([&] {
    const auto have = std::ranges::count(TheStore().frames, userId, &Frame::userId);
    return static_cast<std::size_t>(have) >= count;
  });
}

bool WaitForFrame(const std::string& userId, const std::function<bool(const Frame&)>& pleases) {
  return TheStore().Wait([&] {
    return std::ranges::any_of(TheStore().frames,
                               [&](const Frame& frame) { return frame.userId == userId && pleases(frame); });
  });
}

void Register() {
  RegisterMeeting();
  RegisterStreams();
  RegisterDevices();
}

void Started::SetUpTestSuite() {
  static bool started = false;
  if (std::exchange(started, true)) return;
  ServerOptionSetRTCParams("{}");
  VemoraInit(3, 0);
  Register();
  VemoraInitRtc();
  VemoraInitDevice();
}

void Started::Join(const std::string& userId) {
  const JoinUser user{userId.c_str(), ""};
  const JoinRoomOption option{16, 0, true, true, false};
  ASSERT_EQ(JoinRoom("token", "room", &user, &option), 0);
  ASSERT_TRUE(WaitFor("OnRoomStateChanged room " + userId + " 1"));
}

void Started::Watch(const std::string& sid, std::int32_t width, std::int32_t height, std::int32_t frameRate) {
  const SubscribeConfig config{frameRate, width, height, {-1, -1, -1, -1, -1, -1, -1}};
  ASSERT_NE(WaitForPrefix("OnMultiStreamAdded " + sid.substr(0, sid.rfind('_')) + " " + sid), "");
  ASSERT_EQ(Subscribe(sid.c_str(), 3, 0, &config), 0);
  ASSERT_NE(WaitForPrefix("OnStreamSubscribed 0 " + sid), "");
}

}  // namespace stand
