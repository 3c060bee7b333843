#include "RecordArguments.h"
#include "Tables.h"
#include "log/LogInstance.h"
#include "records/MeetingRecords.h"

namespace TESSARIN_LUMARC {

namespace {

void SetDefaultVideoOutputMode(IPCData& request) {
  const bool first = request.parsed.Boolean(0);
  const bool second = request.parsed.Boolean(1);
  TESSARIN_LOG::Log("MeetingManager::SetDefaultVideoOutputMode: {},{}", first, second);
  Api().SetDefaultVideoOutputMode(first, second);
  ReplyNull(request);
}

void SetSubChannels(IPCData& request) {
  const auto channels = ReadRecordArgument<std::vector<Channel>>(request);
  std::vector<EngineChannel> rows;
  rows.reserve(channels.size());
  for (const auto& channel : channels) rows.push_back({channel.channelName.c_str(), channel.volumeScale});
  ReplyValue(request, Api().SetSubChannels(rows.data(), static_cast<std::int32_t>(rows.size())));
}

// The record is checked and goes no further.
void SetVideoOutputMode(IPCData& request) {
  static_cast<void>(ReadRecordArgument<std::vector<OutputMode>>(request));
  ReplyNull(request);
}

// A mute that is made of a volume. The answer is 0 whatever the engine said.
void SetPlaybackDigitalMute(IPCData& request) {
  constexpr std::int64_t kSilent = 0;
  constexpr std::int64_t kFull = 100;
  Api().SetPlaybackVolume(request.parsed.Boolean(0) ? kSilent : kFull);
  ReplyValue(request, 0);
}

void GetDevicePerformanceInfos(IPCData& request) {
  DevicePerformance performance{};
  Api().GetDevicePerformanceInfos(&performance);
  ReplyValue(request, performance);
}

// Answers true whatever the engine said.
template <auto Entry>
void AnswerTrue(IPCData& request) {
  (Api().*Entry)();
  ReplyValue(request, true);
}

constexpr auto kRows = Rows(
    // ---- Forwarded ----
    Forward<&EngineApi::DestroyServer, Reply::Null>("DestroyServer"),
    Forward<&EngineApi::EnableMicAagc, Reply::Null>("EnableMicAagc"),
    Forward<&EngineApi::SetAecOption, Reply::Null>("SetAecOption"),
    Forward<&EngineApi::DestroyedRtcEngine, Reply::Null>("DestroyedRtcEngine"),
    Forward<&EngineApi::SetChannelProfile, Reply::Null>("SetChannelProfile"),
    Forward<&EngineApi::Logout, Reply::Null>("Logout"),
    Forward<&EngineApi::SendServerMessage, Reply::Null>("SendServerMessage"),
    Forward<&EngineApi::UpdateLoginToken, Reply::Null>("UpdateLoginToken"),
    Forward<&EngineApi::EnableLocalVolumeIndicator, Reply::Null>("EnableLocalVolumeIndicator"),
    Forward<&EngineApi::SetMicrosoftLibPath, Reply::Null>("SetMicrosoftLibPath"),
    Forward<&EngineApi::SetBackgroundImage, Reply::Null>("SetBackgroundImage"),
    Forward<&EngineApi::EnableBackgroundBlur, Reply::Null>("EnableBackgroundBlur"),
    Forward<&EngineApi::EnableRnNoise, Reply::Null>("EnableRnNoise"),
    Forward<&EngineApi::CancelAvatarEffect, Reply::Null>("CancelMojiEffect"),
    Forward<&EngineApi::SetLocalScreenFrameCallback, Reply::Null>("SetLocalScreenFrameCallback"),
    Forward<&EngineApi::SetLocalVideoMirrorType, Reply::Null>("SetLocalVideoMirrorType"),
    Forward<&EngineApi::SetLowLightAdjusted, Reply::Null>("SetLowLightAdjusted"),
    Forward<&EngineApi::StartAudioPlaybackDeviceTest, Reply::Null>("StartAudioPlaybackDeviceTest"),
    Forward<&EngineApi::StartAudioDeviceRecordTest, Reply::Null>("StartAudioDeviceRecordTest"),
    Forward<&EngineApi::StopAudioPlaybackDeviceTest, Reply::Null>("StopAudioPlaybackDeviceTest"),
    Forward<&EngineApi::StopAudioDeviceRecordAndPlayTest, Reply::Null>("StopAudioDeviceRecordAndPlayTest"),
    Forward<&EngineApi::StopAudioDevicePlayTest, Reply::Null>("StopAudioDevicePlayTest"),
    Forward<&EngineApi::SetUserVisibility, Reply::Number>("SetClientRole"),
    Forward<&EngineApi::JoinBreakDownRoom, Reply::Number>("JoinBreakDownRoom"),
    Forward<&EngineApi::LeaveBreakDownRoom, Reply::Number>("LeaveBreakDownRoom"),
    Forward<&EngineApi::SetPublishChannel, Reply::Number>("SetPublishChannel"),
    Forward<&EngineApi::MuteLocalScreenAudio, Reply::Number>("MuteLocalScreenAudio"),
    Forward<&EngineApi::EnableLocalAudio, Reply::Number>("EnableLocalAudio"),
    Forward<&EngineApi::LoginSetServerParams, Reply::Number>("LoginSetServerParams"),
    Forward<&EngineApi::IsMuteLocalAudio, Reply::Bool>("IsMuteLocalAudio"),
    Forward<&EngineApi::IsMuteLocalVideo, Reply::Bool>("IsMuteLocalVideo"),
    Forward<&EngineApi::IsMacArm64, Reply::Bool>("IsMacArm64"),
    Forward<&EngineApi::GetCurrentPlaybackMute, Reply::Bool>("GetCurrentPlaybackMute"),
    Forward<&EngineApi::IsCurrentPlayoutDeviceMuted, Reply::Bool>("IsCurrentPlayoutDeviceMuted"),
    Forward<&EngineApi::IsCurrentRecordingDeviceMuted, Reply::Bool>("IsCurrentRecordingDeviceMuted"),
    Forward<&EngineApi::GetMicrophoneAuthorizationStatus, Reply::Int>("GetMicrophoneAuthorizationStatus"),
    Forward<&EngineApi::GetCameraAuthorizationStatus, Reply::Int>("GetCameraAuthorizationStatus"),
    // ---- Without an engine call on this platform; known, so that a client that calls them gets an answer ----
    RequestRow{"SetNsOption", ReplyNull}, RequestRow{"StartLocalAudioVolumeListen", ReplyNull},
    RequestRow{"StopLocalAudioVolumeListen", ReplyNull}, RequestRow{"ForceFlipVideo", ReplyNull},
    RequestRow{"ReleaseRtcMemory", ReplyNull}, RequestRow{"SyncWindowPos", ReplyNull},
    RequestRow{"SetFgConfig", ReplyNull}, RequestRow{"EnableFaceBeauty", ReplyNull},
    RequestRow{"SetVideoEnhanceEnable", ReplyNull},
    RequestRow{"IsWindowFullScreen", [](IPCData& request) { ReplyValue(request, false); }},
    RequestRow{"SetEnableKaMedia", [](IPCData& request) { ReplyValue(request, 0); }},
    RequestRow{"ShallowCopyRtcMemory", NeverAnswered},
    // ---- With a handler of their own ----
    RequestRow{"SetDefaultVideoOutputMode", SetDefaultVideoOutputMode}, RequestRow{"SetSubChannels", SetSubChannels},
    RequestRow{"SetVideoOutputMode", SetVideoOutputMode}, RequestRow{"SetPlaybackDigitalMute", SetPlaybackDigitalMute},
    RequestRow{"GetDevicePerformanceInfos", GetDevicePerformanceInfos},
    RequestRow{"StartAudioLocalRecord", AnswerTrue<&EngineApi::StartAudioCapture>},
    RequestRow{"StopAudioLocalRecord", AnswerTrue<&EngineApi::StopAudioCapture>});

static_assert(kRows.size() + 7 == 63);  // and those of MeetingManager itself

}  // namespace

std::span<const RequestRow> MeetingRequestRows() {
  return kRows;
}

}  // namespace TESSARIN_LUMARC
