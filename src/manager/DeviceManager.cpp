#include "DeviceManager.h"

#include <array>
#include <string>

#include "LentList.h"
#include "Tables.h"
#include "records/DeviceRecords.h"

namespace TESSARIN_LUMARC {

namespace {

// The types that the server information lists: microphones, speakers, cameras. The numbers are the engine's.
constexpr std::int32_t kGroupedTypes[] = {0, 1, 2};

// ---- Events ----

// Only the flag is passed on.
void AudioServiceStateUpdated(std::int64_t /*reserved*/, bool state) {
  SendArguments("OnCoreAudioStatusUpdated", state);
}

// The client sees the third list before the second.
template <FixedText Event>
void DevicesChanged(std::int64_t deviceType, std::int32_t count1, const DeviceInfo* list1, std::int32_t count2,
                    const DeviceInfo* list2, std::int32_t count3, const DeviceInfo* list3) {
  SendArguments(Event.text, deviceType, count1, list1, count3, list3, count2, list2);
}

constexpr auto kEvents = EventRows(
    Plain<&EngineApi::OnErrorReport, "OnErrorReport">("OnErrorReport"),
    Plain<&EngineApi::OnDetectError, "OnDetectError">("OnDetectError"),
    Plain<&EngineApi::OnDoctorEventTracking, "OnDoctorEventTracking">("OnDoctorEventTracking"),
    Own<&EngineApi::OnAudioServiceStateUpdated, AudioServiceStateUpdated>("OnAudioServiceStateUpdated",
                                                                          "OnCoreAudioStatusUpdated"),
    Plain<&EngineApi::OnRecordingVolumeChange, "OnRecordingVolumeChanged">("OnRecordingVolumeChange"),
    // The meeting registers this one again, later, for the same event; its function stands.
    Plain<&EngineApi::OnLocalAudioStateChanged, "OnLocalAudioStateChanged">("OnLocalAudioStateChanged"),
    Own<&EngineApi::OnDeviceAdded, DevicesChanged<"DeviceAdded">>("OnDeviceAdded", "DeviceAdded"),
    Own<&EngineApi::OnDeviceRemoved, DevicesChanged<"DeviceRemoved">>("OnDeviceRemoved", "DeviceRemoved"),
    Plain<&EngineApi::OnDeviceSetSuccess, "DeviceSetSuccess">("OnDeviceSetSuccess"),
    Plain<&EngineApi::OnDeviceChange, "DeviceChange">("OnDeviceChange"),
    Plain<&EngineApi::OnChangeDeviceConfirm, "ChangeDeviceConfirm">("OnChangeDeviceConfirm"),
    Plain<&EngineApi::OnPlaybackVolumeChange, "PlaybackVolumeChange">("OnPlaybackVolumeChange"),
    Plain<&EngineApi::OnSystemDefaultDeviceChange, "SystemDefaultDeviceChange">("OnSystemDefaultDeviceChange"),
    Plain<&EngineApi::OnRtcSdkError, "RtcSdkError">("OnRtcSdkError"),
    Plain<&EngineApi::OnRtcSdkWarning, "RtcSdkWarning">("OnRtcSdkWarning"),
    Plain<&EngineApi::OnServerMemoryWarn, "ServerMemoryWarn">("OnServerMemoryWarn"),
    Plain<&EngineApi::OnRecordingMuteStateChange, "RecordingMuteStateChange">("OnRecordingMuteStateChange"));
static_assert(kEvents.size() == 17);

// ---- Requests ----

std::string CurrentDeviceId(std::int64_t deviceType) {
  constexpr std::size_t kIdBytes = 1024;
  std::array<char, kIdBytes + 1> buffer{};  // one more than the engine's share, so that a NUL always stands behind it
  Api().GetCurrentDeviceId(deviceType, buffer.data());
  return buffer.data();
}

void GetDevices(IPCData& request) {
  DeviceList list{};
  Api().GetDevices(request.parsed.Integer(0), &list);
  const LentList lent(list.devices, list.count, Api().FreeDeviceInfoList);
  ReplyValue(request, lent.Copy<DeviceInfo>());
}

// The device, or null if there is none.
template <auto Entry>
void AnswerDevice(IPCData& request) {
  DeviceInfo device{};
  if (!(Api().*Entry)(request.parsed.Integer(0), &device)) return ReplyNull(request);
  ReplyValue(request, device);
}

void GetCurrentDeviceId(IPCData& request) {
  ReplyValue(request, CurrentDeviceId(request.parsed.Integer(0)));
}

// Only a size that is written with a fraction or an exponent counts.
void SetCameraConfig(IPCData& request) {
  Api().SetVideoDigitalZoomConfig(request.parsed.Integer(0), static_cast<float>(request.parsed.Double(1)));
  ReplyNull(request);
}

// These two answer 0 whatever the engine said.
void StartPlayAudio(IPCData& request) {
  const AudioMixingOption option{
      .reserved1 = 0, .reserved2 = 0, .value = static_cast<std::int32_t>(request.parsed.Integer(1)), .reserved3 = 0};
  Api().StartAudioMixing(request.parsed.String(0).c_str(), &option);
  ReplyValue(request, 0);
}

void StopPlayAudio(IPCData& request) {
  Api().StopAudioMixing();
  ReplyValue(request, 0);
}

constexpr auto kRows = Rows(
    // ---- Forwarded ----
    Forward<&EngineApi::OpenAccessibilityAuthorization, Reply::Null>("OpenAccessibilityAuthorization"),
    Forward<&EngineApi::SetRestartCoreaudiodAuthorizationDescriptionForRtc, Reply::Null>(
        "SetRestartCoreaudiodAuthorizationDescriptionForRtc"),
    Forward<&EngineApi::SetRestartCoreaudiodAuthorizationDescription, Reply::Null>(
        "SetRestartCoreaudiodAuthorizationDescription"),
    // On purpose not the entry of the same name.
    Forward<&EngineApi::SetRestartCoreaudiodAuthorizationDescription, Reply::Null>(
        "SetRestartVdcAssistantAuthorizationDescription"),
    Forward<&EngineApi::SetVideoDigitalZoomControl, Reply::Null>("VirtualCameraControl"),
    Forward<&EngineApi::StartVideoDigitalZoomControl, Reply::Null>("StartVirtualCameraControl"),
    Forward<&EngineApi::StopVideoDigitalZoomControl, Reply::Null>("StopVirtualCameraControl"),
    Forward<&EngineApi::GetAudioServiceState, Reply::Null>("GetCoreAudioStatus"),
    Forward<&EngineApi::OpenCameraPreference, Reply::Null>("OpenCameraPreference"),
    Forward<&EngineApi::OpenScreenRecordPreference, Reply::Null>("OpenScreenRecordPreference"),
    // The system has one place for all three.
    Forward<&EngineApi::OpenScreenRecordPreference, Reply::Null>("OpenAccessibilityPreference"),
    Forward<&EngineApi::OpenScreenRecordPreference, Reply::Null>("OpenMicPreference"),
    Forward<&EngineApi::StartAudioCapture, Reply::Null>("StartAudioCapture"),
    Forward<&EngineApi::StopAudioCapture, Reply::Null>("StopAudioCapture"),
    // No client reaches this one: a key on the wire never becomes a name that starts in lower case. It stays as it is.
    Forward<&EngineApi::setVideoCaptureRotation, Reply::Null>("setVideoCaptureRotation"),
    Forward<&EngineApi::GetScreenRecordAuthorizationStatus, Reply::Int>("GetScreenRecordAuthorizationStatus"),
    Forward<&EngineApi::GetAccessibilityAuthorizationStatus, Reply::Int>("GetAccessibilityAuthorizationStatus"),
    Forward<&EngineApi::SetDevice, Reply::Int>("SetDevice"),
    Forward<&EngineApi::GetCurrentVolume, Reply::Number>("GetCurrentVolume"),
    Forward<&EngineApi::SetCurrentVolume, Reply::Int>("SetCurrentVolume"),
    Forward<&EngineApi::SetCurrentRecordingMute, Reply::Int>("SetCurrentRecordingMute"),
    Forward<&EngineApi::SetCurrentPlaybackMute, Reply::Int>("SetCurrentPlaybackMute"),
    Forward<&EngineApi::SetAppVolume, Reply::Int>("SetAppVolume"),
    Forward<&EngineApi::EnableRecordAutoSwitch, Reply::Int>("EnableRecordAutoSwitch"),
    Forward<&EngineApi::ControlCamera, Reply::Int>("ControlCamera"),
    Forward<&EngineApi::StartControlCamera, Reply::Int>("StartControlCamera"),
    Forward<&EngineApi::StopControlCamera, Reply::Int>("StopControlCamera"),
    Forward<&EngineApi::GetAudioPluginDeviceId, Reply::String>("GetAudioPluginDeviceId"),
    // ---- With a handler of their own ----
    RequestRow{"GetDevices", GetDevices},
    RequestRow{"GetDefaultDeviceInfo", AnswerDevice<&EngineApi::GetDefaultDeviceInfo>},
    RequestRow{"GetCurrentDeviceInfo", AnswerDevice<&EngineApi::GetCurrentDeviceInfo>},
    RequestRow{"GetCurrentDeviceId", GetCurrentDeviceId}, RequestRow{"SetCameraConfig", SetCameraConfig},
    RequestRow{"StartPlayAudio", StartPlayAudio}, RequestRow{"StopPlayAudio", StopPlayAudio},
    RequestRow{"StartMicrophoneTest", NeverAnswered}, RequestRow{"StopMicrophoneTest", NeverAnswered},
    RequestRow{"StartSpeakerTest", NeverAnswered}, RequestRow{"StopSpeakerTest", NeverAnswered},
    RequestRow{"SetSystemVolume", NeverAnswered});
static_assert(kRows.size() == 40);

}  // namespace

std::span<const RequestRow> DeviceRequestRows() {
  return kRows;
}

std::span<const EventRow> DeviceEventRows() {
  return kEvents;
}

void DeviceManager::Register() {
  RegisterAll(DeviceEventRows());
  Add(DeviceRequestRows());
}

std::vector<DeviceGroup> DeviceManager::Groups() const {
  std::vector<DeviceGroup> groups;
  for (const std::int32_t type : kGroupedTypes) {
    DeviceList list{};
    Api().GetDevices(type, &list);
    const LentList lent(list.devices, list.count, Api().FreeDeviceInfoList);
    groups.push_back({CurrentDeviceId(type), type, lent.Copy<DeviceInfo>()});
  }
  return groups;
}

}  // namespace TESSARIN_LUMARC
