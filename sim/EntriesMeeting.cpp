// The room, its streams, the user's own media and the login.
#include <algorithm>
#include <atomic>
#include <cstdio>

#include "Callbacks.h"
#include "Entry.h"
#include "LocalMedia.h"
#include "Room.h"
#include "Screens.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::int64_t kAudioAndVideo = 3;

// Tells the news of a call on the stage's thread.
template <auto Registration, class... A>
void Tell(A... arguments) {
  Stage::Get().Now([=] { Emit<Registration>(arguments...); });
}

std::atomic<std::int64_t> messages{0};

std::int64_t Join(const char*, const char* roomId, const JoinUser* user, const JoinRoomOption*) {
  return Room::Get().Join(roomId, user->userId);
}

std::int64_t SubscribeStream(const char* sid, std::int64_t media, std::int64_t, const SubscribeConfig* config) {
  return Room::Get().Subscribe(sid, media == kAudioAndVideo, config->width, config->height, config->frameRate);
}

std::int64_t SwitchLocalAudio(bool enable) {
  LocalMedia::Get().EnableAudio(enable);
  return 0;
}

std::int64_t SwitchLocalVideo(bool enable) {
  LocalMedia::Get().EnableVideo(enable);
  return 0;
}

void ConfigureCamera(const VideoCaptureConfig* config) {
  LocalSource camera = LocalMedia::Get().Camera();
  if (config->width > 0 && config->height > 0) {
    camera.encoding.width = config->width;
    camera.encoding.height = config->height;
  }
  if (config->frameRate > 0) camera.encoding.frameRate = config->frameRate;
  if (camera.encoding.IsUsable()) LocalMedia::Get().SetCamera(camera);
}

void DestroyRtc() {
  Room::Get().Leave();
  LocalMedia::Get().SetPreview(false);
  Tell<&OnRtcDestroyStart>();
  Tell<&OnRtcDestroyFinish>();
}

void SendMessage(const char*) {
  Tell<&OnServerMessageSendResult>(++messages, std::int64_t{0});
}

std::int64_t Login(const char*, const char*, const char*, const char*) {
  Tell<&OnServerParamsSetResult>(std::int64_t{0});
  return 0;
}

void DescribeMachine(DevicePerformance* out) {
  const auto copy = [](auto& target, const char* text) { std::snprintf(target, sizeof target, "%s", text); };
  *out = DevicePerformance{};
  out->memory = 8192;
  out->cpuCores = 4;
  out->cpuThreads = 8;
  out->cpuFrequency = 2400;
  copy(out->cpuModel, "Simulated CPU");
  copy(out->gpuModel, "Simulated GPU");
  copy(out->os, "Simulated OS");
  copy(out->osVersion, "1.0");
  copy(out->deviceModel, "Simulated Device");
}

}  // namespace
}  // namespace sim

SIM_ENTRY(4, JoinRoom, &sim::Join)
SIM_ENTRY(0, LeaveRoom, [] { return sim::Room::Get().Leave(); })
SIM_ENTRY(0, DestroyedRtcEngine, &sim::DestroyRtc)
SIM_PLAIN(2, JoinBreakDownRoom)
SIM_PLAIN(0, LeaveBreakDownRoom)
SIM_PLAIN(1, SetUserVisibility)
SIM_PLAIN(1, SetPublishChannel)
SIM_PLAIN(2, SetSubChannels)
SIM_PLAIN(1, SetChannelProfile)
SIM_PLAIN(2, SetRtcRuntimeParameter)

SIM_ENTRY(4, Subscribe, &sim::SubscribeStream)
SIM_ENTRY(3, Unsubscribe, [](const char* sid, std::int64_t, std::int64_t) { return sim::Room::Get().Unsubscribe(sid); })
SIM_ENTRY(1, SetFps, [](std::int64_t fps) { sim::MediaStream::LimitRate(fps); })

SIM_ENTRY(0, StartVideoCapture, [] { sim::LocalMedia::Get().SetPreview(true); })
SIM_ENTRY(0, StopVideoCapture, [] { sim::LocalMedia::Get().SetPreview(false); })
SIM_ENTRY(1, EnableLocalVideo, &sim::SwitchLocalVideo)
SIM_ENTRY(0, IsMuteLocalVideo, [] { return !sim::LocalMedia::Get().IsVideoEnabled(); })
SIM_ENTRY(1, SetVideoCaptureConfig, &sim::ConfigureCamera)
SIM_PLAIN(1, SetLocalVideoMirrorType)
SIM_PLAIN(2, SetDefaultVideoOutputMode)
SIM_PLAIN(1, SetLowLightAdjusted)
SIM_PLAIN(1, SetLocalScreenFrameCallback)
SIM_PLAIN(4, SetVideoSourceType)

SIM_ENTRY(1, EnableLocalAudio, &sim::SwitchLocalAudio)
SIM_ENTRY(0, IsMuteLocalAudio, [] { return !sim::LocalMedia::Get().IsAudioEnabled(); })
SIM_PLAIN(1, EnableMicAagc)
SIM_PLAIN(1, SetAecOption)
SIM_PLAIN(1, SetPlaybackVolume)
SIM_PLAIN(1, MuteLocalScreenAudio)
SIM_PLAIN(2, EnableLocalVolumeIndicator)
SIM_ENTRY(2, StartAudioPlaybackDeviceTest,
          [](const char*, std::int64_t) { sim::Tell<&OnAudioPlaybackDeviceTestVolume>(std::int64_t{60}); })
SIM_PLAIN(1, StartAudioDeviceRecordTest)
SIM_PLAIN(0, StopAudioPlaybackDeviceTest)
SIM_PLAIN(0, StopAudioDeviceRecordAndPlayTest)
SIM_PLAIN(0, StopAudioDevicePlayTest)

SIM_ENTRY(4, LoginSetServerParams, &sim::Login)
SIM_ENTRY(0, Logout, [] { sim::Tell<&OnLogOut>(); })
SIM_ENTRY(1, SendServerMessage, &sim::SendMessage)
SIM_PLAIN(1, UpdateLoginToken)

SIM_ENTRY(1, GetDevicePerformanceInfos, &sim::DescribeMachine)
SIM_PLAIN(0, IsMacArm64)
SIM_ENTRY(1, GetPidFromWindowNumber, [](std::int64_t number) { return sim::Screens::Get().PidOf(number); })

SIM_PLAIN(1, EnableRnNoise)
SIM_PLAIN(1, EnableBackgroundBlur)
SIM_PLAIN(2, SetBackgroundImage)
SIM_PLAIN(0, CancelAvatarEffect)
