// The registration entries.
#include <algorithm>
#include <iterator>

#include "Callbacks.h"
#include "Entry.h"

// In the order of engine_abi.h.
// clang-format off
#define SIM_REGISTRATIONS(ROW)                                                                                   \
  ROW(OnRtcSdkInit) ROW(OnMyUidChange) ROW(OnUserJoin) ROW(OnUserLeave) ROW(OnRoomStateChanged)                  \
  ROW(OnAudioRecordFormat) ROW(OnNetworkQuality) ROW(OnNetworkTypeChanged) ROW(OnConnectionStateChanged)         \
  ROW(OnAudioVolumeIndication) ROW(OnFirstLocalVideoFrameCaptured) ROW(OnFirstRemoteVideoFrameDecoded)           \
  ROW(OnFirstRemoteAudioFrame) ROW(OnLocalAudioVolumeIndication) ROW(OnLocalVideoStateChanged)                   \
  ROW(OnVolumeChange) ROW(OnVemoraException) ROW(OnUlvoMeriTrack) ROW(OnVideoCommonFrame)                        \
  ROW(RoomBinaryMessageReceived) ROW(UserBinaryMessageReceived) ROW(UserMessageReceived) ROW(OnRtcDestroyStart)  \
  ROW(OnRtcDestroyFinish) ROW(OnLoginResult) ROW(OnServerParamsSetResult) ROW(OnServerMessageSendResult)         \
  ROW(OnLogOut) ROW(OnSysStats) ROW(OnServerVideoFrame) ROW(OnServerScreenFrame) ROW(OnUserPublishStream)        \
  ROW(OnUserUnpublishStream) ROW(OnNetworkBandwidthEstimationResult) ROW(OnAudioPlaybackDeviceTestVolume)        \
  ROW(OnScreenCaptureStatus) ROW(OnScreenCaptureStartResult) ROW(OnShareCaptureCardSize)                         \
  ROW(OnDesktopThumbnail) ROW(OnWindowThumbnail) ROW(OnShareWindowChanged) ROW(OnShareDesktopChanged)            \
  ROW(OnAudioCapturerStart) ROW(OnAudioCapturerStop) ROW(OnAudioCapturerNoAccess)                                \
  ROW(OnAudioCapturerBeginInstall) ROW(OnAudioCapturerCancelInstall) ROW(OnAudioCapturerInstallSuccess)          \
  ROW(OnAudioCapturerInstallFail) ROW(OnScreenCastUserJoined) ROW(OnScreenCastUserOffline)                       \
  ROW(OnScreenCastWarning) ROW(OnScreenCastError) ROW(OnScreenCastEnableShareAudio) ROW(OnMultiStreamRemoved)    \
  ROW(OnMultiStreamAdded) ROW(OnStreamSubscribed) ROW(OnLocalVideoSizeChanged) ROW(OnRemoteVideoSizeChanged)     \
  ROW(OnErrorReport) ROW(OnDetectError) ROW(OnDoctorEventTracking) ROW(OnAudioServiceStateUpdated)               \
  ROW(OnRecordingVolumeChange) ROW(OnLocalAudioStateChanged) ROW(OnDeviceAdded) ROW(OnDeviceRemoved)             \
  ROW(OnDeviceSetSuccess) ROW(OnDeviceChange) ROW(OnChangeDeviceConfirm) ROW(OnPlaybackVolumeChange)             \
  ROW(OnSystemDefaultDeviceChange) ROW(OnRtcSdkError) ROW(OnRtcSdkWarning) ROW(OnServerMemoryWarn)               \
  ROW(OnRecordingMuteStateChange)
// clang-format on

#define SIM_REGISTRATION(entry)                                    \
  extern "C" void RAVO_CALL entry(entry##Callback callback) {      \
    ::sim::callbackSlot<& entry> = callback;                       \
    ::sim::Enter(#entry, true, ::sim::CallLine(#entry, callback)); \
  }
SIM_REGISTRATIONS(SIM_REGISTRATION)

namespace sim {
namespace {

#define SIM_NAMED_CALLBACK(entry) {#entry, &EmitJson<&::entry>},
constexpr NamedCallback kCallbacks[] = {SIM_REGISTRATIONS(SIM_NAMED_CALLBACK)};

}  // namespace

const NamedCallback* FindCallback(std::string_view entry) {
  const auto found = std::ranges::find(kCallbacks, entry, &NamedCallback::entry);
  return found == std::end(kCallbacks) ? nullptr : found;
}

}  // namespace sim
