// Devices, permissions and camera control.
#include <cstdio>

#include "Callbacks.h"
#include "Devices.h"
#include "Entry.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::int32_t kAuthorized = 1;
constexpr std::size_t kIdBytes = 1024;

std::int32_t Authorized() {
  return kAuthorized;
}

void CopyCurrentId(std::int64_t type, char* buffer) {
  DeviceInfo info{};
  Devices::Get().Current(type, info);
  std::snprintf(buffer, kIdBytes, "%s", info.deviceId);
}

void TellAudioService(std::int64_t value) {
  Stage::Get().Now([value] { Emit<&OnAudioServiceStateUpdated>(value, true); });
}

}  // namespace
}  // namespace sim

SIM_ENTRY(2, GetDevices, [](std::int64_t type, DeviceList* out) { sim::Devices::Get().Lend(type, *out); })
SIM_ENTRY(2, FreeDeviceInfoList,
          [](DeviceInfo* devices, std::int32_t count) { sim::Devices::Get().TakeBack(devices, count); })
SIM_ENTRY(3, SetDevice, [](std::int64_t type, const char* deviceId, bool flag) {
  return sim::Devices::Get().Select(type, deviceId, flag);
})
SIM_ENTRY(2, GetDefaultDeviceInfo,
          [](std::int64_t type, DeviceInfo* out) { return sim::Devices::Get().Default(type, *out); })
SIM_ENTRY(2, GetCurrentDeviceInfo,
          [](std::int64_t type, DeviceInfo* out) { return sim::Devices::Get().Current(type, *out); })
SIM_ENTRY(2, GetCurrentDeviceId, &sim::CopyCurrentId)
SIM_ENTRY(1, GetCurrentVolume, [](std::int64_t type) { return sim::Devices::Get().Volume(type); })
SIM_ENTRY(2, SetCurrentVolume,
          [](std::int64_t type, std::int64_t volume) { return sim::Devices::Get().SetVolume(type, volume); })
SIM_ENTRY(0, IsCurrentRecordingDeviceMuted, [] { return sim::Devices::Get().IsMuted(sim::kMicrophone); })
SIM_ENTRY(1, SetCurrentRecordingMute, [](bool mute) { return sim::Devices::Get().SetMute(sim::kMicrophone, mute); })
SIM_ENTRY(0, IsCurrentPlayoutDeviceMuted, [] { return sim::Devices::Get().IsMuted(sim::kSpeaker); })
SIM_ENTRY(0, GetCurrentPlaybackMute, [] { return sim::Devices::Get().IsMuted(sim::kSpeaker); })
SIM_ENTRY(1, SetCurrentPlaybackMute,
          [](std::int64_t mute) { return sim::Devices::Get().SetMute(sim::kSpeaker, mute != 0); })
SIM_PLAIN(2, SetAppVolume)
SIM_PLAIN(1, EnableRecordAutoSwitch)

SIM_ENTRY(0, GetScreenRecordAuthorizationStatus, &sim::Authorized)
SIM_ENTRY(0, GetMicrophoneAuthorizationStatus, &sim::Authorized)
SIM_ENTRY(0, GetCameraAuthorizationStatus, &sim::Authorized)
SIM_ENTRY(0, GetAccessibilityAuthorizationStatus, &sim::Authorized)
SIM_PLAIN(0, OpenAccessibilityAuthorization)
SIM_PLAIN(1, SetRestartCoreaudiodAuthorizationDescriptionForRtc)
SIM_PLAIN(1, SetRestartCoreaudiodAuthorizationDescription)
SIM_PLAIN(0, OpenCameraPreference)
SIM_PLAIN(0, OpenScreenRecordPreference)

SIM_PLAIN(1, ControlCamera)
SIM_PLAIN(1, StartControlCamera)
SIM_PLAIN(1, StopControlCamera)
SIM_PLAIN(1, setVideoCaptureRotation)
SIM_PLAIN(2, SetVideoDigitalZoomConfig)
SIM_PLAIN(1, SetVideoDigitalZoomControl)
SIM_PLAIN(1, StartVideoDigitalZoomControl)
SIM_PLAIN(0, StopVideoDigitalZoomControl)

SIM_ENTRY(1, GetAudioServiceState, &sim::TellAudioService)
SIM_ENTRY(0, GetAudioPluginDeviceId, []() -> const char* { return "sim-audio-plugin"; })
SIM_PLAIN(0, StartAudioCapture)
SIM_PLAIN(0, StopAudioCapture)
