/* The contract between Ravo and the real-time engine: what a library exports to be loaded as the engine. Ravo looks
 * each entry up by its name and calls it without a test, so an engine exports all that stand here.
 *
 * Entries have C linkage and the C calling convention, and throw nothing. They are called one at a time, by one thread
 * of Ravo's. Callbacks may run on any thread of the engine's, several at once, also while a call is in progress. They
 * come back soon: work is put off to Ravo's own threads, and none calls an entry.
 *
 * How values travel, where nothing else is said:
 *   number        int64_t, also for enumerations, indexes and ids; int32_t where a result is a status
 *   flag          bool, one byte, 0 or 1
 *   text          const char*, NUL-terminated UTF-8, never null, empty if there is none
 *   list          a pointer and an int32_t count; the pointer may be null if the count is 0
 *   record        by pointer; VideoFrameInfo, DeviceInfo and the records of options by value
 *   result        a number below 0 is an error of the engine and is shown to the client as it is
 * An int32_t among the parameters is always the count of a list.
 *
 * Who owns what the pointers lead to stands in engine_records.h. Nothing is freed across the boundary but through the
 * entries whose names begin with Free.
 *
 * Order: the options, VemoraInit, all registrations, VemoraInitRtc, VemoraInitDevice, one SetRtcRuntimeParameter, then
 * whatever the client asks for, and DestroyServer at the end. A client may ask for DestroyServer earlier: an engine
 * survives calls that come after it, a second DestroyServer among them. */
#ifndef RAVO_ENGINE_ABI_H
#define RAVO_ENGINE_ABI_H

#include "engine_records.h"
#include "platform.h"

#if defined(RAVO_ENGINE_BUILD)
#define RAVO_ENGINE_API RAVO_EXPORT
#else
#define RAVO_ENGINE_API /* looked up at run time, never linked */
#endif

/* A registration: declares the type of the callback, as in OnUserJoinCallback, and the entry that takes it. The engine
 * keeps the callback until it is unloaded; a second registration replaces the first. */
#define RAVO_ENGINE_CALLBACK(Name, ...)                  \
  typedef void(RAVO_CALL * Name##Callback)(__VA_ARGS__); \
  RAVO_ENGINE_API void RAVO_CALL Name(Name##Callback callback)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Lifecycle ---- */

/* The engine's library is ready. */
RAVO_ENGINE_CALLBACK(OnRtcSdkInit, void);
/* Called with 3 and 0. */
RAVO_ENGINE_API void RAVO_CALL VemoraInit(int64_t kind, int64_t flags);
RAVO_ENGINE_API void RAVO_CALL VemoraInitRtc(void);
RAVO_ENGINE_API void RAVO_CALL VemoraInitDevice(void);

/* ---- Library path ---- */

RAVO_ENGINE_API void RAVO_CALL SetMicrosoftLibPath(const char* path);

/* ---- Options: before VemoraInit, in the order that Ravo likes; a few again at run time ---- */

RAVO_ENGINE_API void RAVO_CALL ServerOptionSetServerName(const char* serverName);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetAppId(const char* appId);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetProjectKey(const char* projectKey);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetUserId(const char* userId);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetDeviceId(const char* deviceId);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetActiveSpeakerConfig(ActiveSpeakerConfig config);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetLogPath(const char* path);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetLogVersion(int64_t version);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableDeviceRemember(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableInitDevice(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableHotSwapDeviceAutoChange(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableDelayDeviceAddedAndRemoved(bool enable);
/* Two flags in one word: the low byte enables HID devices, the high byte capture cards. */
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetDeviceManagerConfig(uint16_t flags);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetResourcePath(const char* path);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetResourceEnv(int64_t env);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEffectDownloadConfig(EngineEffectDownloadConfig config);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetVideoProfiles(const VideoProfile* profiles, int32_t count);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetScreenProfile(VideoProfile profile);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetAppVersion(const char* version);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetDeviceNameBlackList(const char* const* names, int32_t count);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetMemDeviceNameBlackList(const char* const* names, int32_t count);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetIgnoreDefaultDeviceIds(const char* const* ids, int32_t count);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetExcludeDeviceType(int64_t deviceType);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetLeaveMeetingConfig(LeaveMeetingConfig config);
/* A JSON text of parameters, or an empty one. Comes several times; each adds to the earlier ones. */
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetRTCParams(const char* params);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableVideoEnhance(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableSameAsSystem(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetDeviceSameAsSystemConfig(EngineDeviceSameAsSystemConfig config);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetDefaultEnableLocalVideo(bool enable);
/* The text of a JSON object. */
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetRtcFgConfig(const char* config);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableAutoPublish(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableRestartDaemon(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetProxyConfig(const EngineProxyConfig* proxies, int32_t count);
/* These three always get false: frames go through Ravo's own slots. */
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableShareMemorySlots(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableNv12(bool enable);
RAVO_ENGINE_API void RAVO_CALL ServerOptionSetEnableCvPixelBuffer(bool enable);

/* ---- Meeting and media callbacks: numbers without a name here are passed on and mean what the engine says ---- */

RAVO_ENGINE_CALLBACK(OnMyUidChange, const char* uid);
RAVO_ENGINE_CALLBACK(OnUserJoin, const char* uid, int64_t value);
RAVO_ENGINE_CALLBACK(OnUserLeave, const char* uid, int64_t value);
/* kind: 1 joined, 2 joined again after a loss, all others are ignored; elapsed: since the call, milliseconds. Neither
 * the state nor the word behind it is read. */
RAVO_ENGINE_CALLBACK(OnRoomStateChanged, const char* roomId, const char* uid, int64_t state, intptr_t reserved,
                     int64_t kind, int64_t elapsed);
RAVO_ENGINE_CALLBACK(OnAudioRecordFormat, int64_t value1, int64_t value2, int64_t value3);
RAVO_ENGINE_CALLBACK(OnNetworkQuality, const LocalQuality* local, const RemoteQuality* remotes, int32_t count);
RAVO_ENGINE_CALLBACK(OnNetworkTypeChanged, int64_t type);
RAVO_ENGINE_CALLBACK(OnConnectionStateChanged, int64_t state);
RAVO_ENGINE_CALLBACK(OnAudioVolumeIndication, const VolumeInfo* volumes, int32_t count, int64_t value1, int64_t value2);
RAVO_ENGINE_CALLBACK(OnFirstLocalVideoFrameCaptured, int64_t index, VideoFrameInfo info);
RAVO_ENGINE_CALLBACK(OnFirstRemoteVideoFrameDecoded, const RemoteStreamKey* key, VideoFrameInfo info);
RAVO_ENGINE_CALLBACK(OnFirstRemoteAudioFrame, const char* uid, int64_t value);
RAVO_ENGINE_CALLBACK(OnLocalAudioVolumeIndication, const LocalVolumeInfo* volume);
RAVO_ENGINE_CALLBACK(OnLocalVideoStateChanged, int64_t state, int64_t error);
RAVO_ENGINE_CALLBACK(OnVolumeChange, int64_t volume, bool flag1, bool flag2);
RAVO_ENGINE_CALLBACK(OnVemoraException, const char* text);
/* A tracking event; pairs with one key keep the first value. */
RAVO_ENGINE_CALLBACK(OnUlvoMeriTrack, const char* event, const MeriTrackPair* pairs, int32_t count);
/* A picture to show, decoded or captured: the 8-bit planes Y, U and V, the latter two at half the height, and for each
 * the bytes from one line to the next; so at least three planes and three strides. The uid is empty for the local
 * preview. Ravo copies the picture before it returns. */
RAVO_ENGINE_CALLBACK(OnVideoCommonFrame, const char* uid, VideoFrameInfo info, const uint8_t* const* planes,
                     int32_t planeCount, const int64_t* strides);
/* Of a message only the length is passed on. */
RAVO_ENGINE_CALLBACK(RoomBinaryMessageReceived, const uint8_t* message, int64_t sizeBytes);
RAVO_ENGINE_CALLBACK(UserBinaryMessageReceived, const char* uid, const uint8_t* message, int64_t sizeBytes);
/* Taken and ignored. */
RAVO_ENGINE_CALLBACK(UserMessageReceived, const char* uid, const char* message);
RAVO_ENGINE_CALLBACK(OnRtcDestroyStart, void);
RAVO_ENGINE_CALLBACK(OnRtcDestroyFinish, void);
RAVO_ENGINE_CALLBACK(OnLoginResult, const char* uid, int64_t value1, int64_t value2);
RAVO_ENGINE_CALLBACK(OnServerParamsSetResult, int64_t result);
RAVO_ENGINE_CALLBACK(OnServerMessageSendResult, int64_t value1, int64_t value2);
RAVO_ENGINE_CALLBACK(OnLogOut, void);
RAVO_ENGINE_CALLBACK(OnSysStats, const SysStats* stats);
/* A frame of a user's video has come (of a screen, below); watches over streams that fall silent. An empty uid stands
 * for all streams of the kind. */
RAVO_ENGINE_CALLBACK(OnServerVideoFrame, const char* uid);
RAVO_ENGINE_CALLBACK(OnServerScreenFrame, const char* uid);
/* media: 1 audio, 2 video, 3 both. */
RAVO_ENGINE_CALLBACK(OnUserPublishStream, const RemoteStreamKey* key, int64_t reserved, int64_t media);
RAVO_ENGINE_CALLBACK(OnUserUnpublishStream, const RemoteStreamKey* key, int64_t media);
RAVO_ENGINE_CALLBACK(OnNetworkBandwidthEstimationResult, const BandwidthEstimation* estimation);
RAVO_ENGINE_CALLBACK(OnAudioPlaybackDeviceTestVolume, int64_t volume);

/* ---- Meeting and media calls ---- */

/* The end: no callback starts after it has returned. */
RAVO_ENGINE_API void RAVO_CALL DestroyServer(void);
RAVO_ENGINE_API int64_t RAVO_CALL JoinBreakDownRoom(const char* roomId, bool flag);
RAVO_ENGINE_API int64_t RAVO_CALL LeaveBreakDownRoom(void);
/* Frames a second that the client's slots take; a hint, of any value. */
RAVO_ENGINE_API void RAVO_CALL SetFps(int64_t fps);
RAVO_ENGINE_API int64_t RAVO_CALL SetUserVisibility(int64_t role);
RAVO_ENGINE_API void RAVO_CALL EnableMicAagc(bool enable);
RAVO_ENGINE_API void RAVO_CALL SetAecOption(int64_t option);
RAVO_ENGINE_API int64_t RAVO_CALL SetPublishChannel(const char* channel);
RAVO_ENGINE_API int64_t RAVO_CALL SetSubChannels(const EngineChannel* channels, int32_t count);
RAVO_ENGINE_API int64_t RAVO_CALL MuteLocalScreenAudio(bool mute);
RAVO_ENGINE_API bool RAVO_CALL IsMuteLocalVideo(void);
RAVO_ENGINE_API void RAVO_CALL GetDevicePerformanceInfos(DevicePerformance* out);
RAVO_ENGINE_API bool RAVO_CALL IsMacArm64(void);
RAVO_ENGINE_API void RAVO_CALL StartAudioPlaybackDeviceTest(const char* path, int64_t value);
RAVO_ENGINE_API void RAVO_CALL StartAudioDeviceRecordTest(int64_t value);
RAVO_ENGINE_API void RAVO_CALL StopAudioPlaybackDeviceTest(void);
RAVO_ENGINE_API void RAVO_CALL StopAudioDeviceRecordAndPlayTest(void);
RAVO_ENGINE_API void RAVO_CALL StopAudioDevicePlayTest(void);
RAVO_ENGINE_API void RAVO_CALL EnableLocalVolumeIndicator(int64_t value1, int64_t value2);
/* Answers at once with 0 or an error; OnRoomStateChanged tells how the join went. */
RAVO_ENGINE_API int64_t RAVO_CALL JoinRoom(const char* token, const char* roomId, const JoinUser* user,
                                           const JoinRoomOption* option);
RAVO_ENGINE_API int64_t RAVO_CALL LeaveRoom(void);
RAVO_ENGINE_API void RAVO_CALL DestroyedRtcEngine(void);
/* The local preview, in a meeting or outside. */
RAVO_ENGINE_API void RAVO_CALL StartVideoCapture(void);
RAVO_ENGINE_API void RAVO_CALL StopVideoCapture(void);
RAVO_ENGINE_API void RAVO_CALL SetChannelProfile(int64_t profile);
RAVO_ENGINE_API void RAVO_CALL SetLocalVideoMirrorType(int64_t type);
RAVO_ENGINE_API int64_t RAVO_CALL EnableLocalVideo(bool enable);
/* 0 silent, 100 full. */
RAVO_ENGINE_API int64_t RAVO_CALL SetPlaybackVolume(int64_t volume);
RAVO_ENGINE_API bool RAVO_CALL IsMuteLocalAudio(void);
RAVO_ENGINE_API int64_t RAVO_CALL EnableLocalAudio(bool enable);
RAVO_ENGINE_API void RAVO_CALL SetDefaultVideoOutputMode(bool flag1, bool flag2);
RAVO_ENGINE_API int64_t RAVO_CALL LoginSetServerParams(const char* text1, const char* text2, const char* text3,
                                                       const char* text4);
RAVO_ENGINE_API void RAVO_CALL Logout(void);
RAVO_ENGINE_API void RAVO_CALL SendServerMessage(const char* message);
RAVO_ENGINE_API void RAVO_CALL UpdateLoginToken(const char* token);
/* The first text is empty; the second is a JSON object of parameters. */
RAVO_ENGINE_API void RAVO_CALL SetRtcRuntimeParameter(const char* reserved, const char* params);
RAVO_ENGINE_API void RAVO_CALL SetLocalScreenFrameCallback(bool enable); /* a switch, no registration */
RAVO_ENGINE_API void RAVO_CALL SetLowLightAdjusted(int64_t value);
/* Not called today. */
RAVO_ENGINE_API int64_t RAVO_CALL GetPidFromWindowNumber(int64_t windowNumber);
/* Called with 1, 0, 0, 0 before a share starts. */
RAVO_ENGINE_API void RAVO_CALL SetVideoSourceType(int64_t type, int64_t value1, int64_t value2, int64_t value3);

/* ---- Effects calls ---- */

RAVO_ENGINE_API void RAVO_CALL EnableRnNoise(bool enable);
RAVO_ENGINE_API void RAVO_CALL EnableBackgroundBlur(bool enable);
RAVO_ENGINE_API void RAVO_CALL SetBackgroundImage(const char* path, int64_t value);
RAVO_ENGINE_API void RAVO_CALL CancelAvatarEffect(void);

/* ---- Screen sharing callbacks ---- */

RAVO_ENGINE_CALLBACK(OnScreenCaptureStatus, int64_t value1, int64_t value2, int64_t value3);
RAVO_ENGINE_CALLBACK(OnScreenCaptureStartResult, int64_t result);
RAVO_ENGINE_CALLBACK(OnShareCaptureCardSize, int64_t value1, int64_t value2, int64_t value3);
/* The answers to GetDesktopThumbnailAsyn and GetWindowThumbnailAsyn: one each, in the order of the calls of a kind. */
RAVO_ENGINE_CALLBACK(OnDesktopThumbnail, const Thumbnail* thumbnails, int32_t count);
RAVO_ENGINE_CALLBACK(OnWindowThumbnail, const Thumbnail* thumbnails, int32_t count);
RAVO_ENGINE_CALLBACK(OnShareWindowChanged, int64_t value1, int64_t value2, int64_t value3);
RAVO_ENGINE_CALLBACK(OnShareDesktopChanged, int64_t value1, int64_t value2);
RAVO_ENGINE_CALLBACK(OnAudioCapturerStart, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerStop, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerNoAccess, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerBeginInstall, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerCancelInstall, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerInstallSuccess, void);
RAVO_ENGINE_CALLBACK(OnAudioCapturerInstallFail, void);
RAVO_ENGINE_CALLBACK(OnScreenCastUserJoined, const char* uid, int64_t value);
RAVO_ENGINE_CALLBACK(OnScreenCastUserOffline, const char* uid, int64_t value);
RAVO_ENGINE_CALLBACK(OnScreenCastWarning, int64_t code);
RAVO_ENGINE_CALLBACK(OnScreenCastError, int64_t code);
RAVO_ENGINE_CALLBACK(OnScreenCastEnableShareAudio, bool enable);

/* ---- Screen sharing calls: a channel is a number of the client's that is passed on, 0 if it gives none ---- */

/* media: 1 audio, 2 video, 3 both; the second argument is 0. */
RAVO_ENGINE_API int64_t RAVO_CALL SCPublishScreen(int64_t media, int64_t reserved);
RAVO_ENGINE_API int64_t RAVO_CALL SCUnpublishScreen(int64_t media, int64_t reserved);
RAVO_ENGINE_API int64_t RAVO_CALL StartScreenAudioCapture(int64_t channel);
RAVO_ENGINE_API int64_t RAVO_CALL StopScreenAudioCapture(int64_t channel);
RAVO_ENGINE_API void RAVO_CALL EnableCursorShare(bool enable, int64_t channel);
RAVO_ENGINE_API int64_t RAVO_CALL setInstallAudioPluginAuthorizationDescription(const char* description);
RAVO_ENGINE_API void RAVO_CALL SCGetDesktopList(DesktopList* out);
RAVO_ENGINE_API void RAVO_CALL FreeDesktopListVector(DesktopInfo* desktops, int32_t count);
RAVO_ENGINE_API void RAVO_CALL SCGetWindowList(WindowList* out);
RAVO_ENGINE_API void RAVO_CALL FreeWindowListVector(WindowInfo* windows, int32_t count);
RAVO_ENGINE_API int64_t RAVO_CALL GetDpiByPoint(int64_t x, int64_t y);
/* Return at once; the pictures come through the callbacks. Sizes in pixels. */
RAVO_ENGINE_API void RAVO_CALL GetDesktopThumbnailAsyn(int64_t width, int64_t height);
RAVO_ENGINE_API void RAVO_CALL GetWindowThumbnailAsyn(int64_t width, int64_t height);
RAVO_ENGINE_API void RAVO_CALL AddIgnoreWindow(const EngineIgnoreWindowParam* window, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL RemoveIgnoreWindow(const EngineIgnoreWindowParam* window, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL ClearIgnoreWindow(int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCSetCaptureFps(int64_t fps, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCSetCaptureFrameResolutionLimit(const ResolutionLimit* limit, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCSetScreenCaptureConfig(const ScreenCaptureConfig* config, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCShowCursor(bool show, int64_t channel);
/* Takes a desktop (true) or a window by the id of its list. */
RAVO_ENGINE_API int64_t RAVO_CALL StartScreenCapture(int64_t id, bool isDesktop, int64_t channel);
RAVO_ENGINE_API int64_t RAVO_CALL StopScreenCapture(int64_t channel);
RAVO_ENGINE_API void RAVO_CALL EnablePromptWindow(bool enable, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCSetAutoActiveShareWindow(bool enable, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SCEnableHighFps(bool enable, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL SetScreenFrameType(int64_t type, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL RemoveIncludeWindow(const EngineIgnoreWindowParam* window, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL AddIncludeWindow(const EngineIgnoreWindowParam* window, int64_t channel);
RAVO_ENGINE_API void RAVO_CALL ClearIncludeWindow(int64_t channel);
RAVO_ENGINE_API int64_t RAVO_CALL ShareCaptureCard(const char* id, bool flag);
RAVO_ENGINE_API int64_t RAVO_CALL StartCaptureCard(const char* text1, const char* text2, bool flag);
RAVO_ENGINE_API int64_t RAVO_CALL StopCaptureCard(const char* id);
RAVO_ENGINE_API int64_t RAVO_CALL PublishCaptureCard(bool publish);
RAVO_ENGINE_API int64_t RAVO_CALL UnpublishCaptureCard(void);
RAVO_ENGINE_API void RAVO_CALL GetCaptureRect(int64_t channel, ScreenRect* out);
RAVO_ENGINE_API void RAVO_CALL SetExternalAudioSource(bool enable, int64_t value1, int64_t value2, int64_t value3);
/* Plays a file. */
RAVO_ENGINE_API int64_t RAVO_CALL StartAudioMixing(const char* path, const AudioMixingOption* option);
RAVO_ENGINE_API int64_t RAVO_CALL StopAudioMixing(void);
RAVO_ENGINE_API void RAVO_CALL SetVideoCaptureConfig(const VideoCaptureConfig* config);

/* ---- Stream callbacks: a stream index of 1 is a screen, all others are videos ---- */

RAVO_ENGINE_CALLBACK(OnMultiStreamRemoved, const char* uid, const char* sid, int64_t streamIndex);
RAVO_ENGINE_CALLBACK(OnMultiStreamAdded, const char* uid, const char* sid, int64_t streamIndex,
                     const StreamResolution* resolutions, int32_t count);
/* The answer to Subscribe; state 0 is success. */
RAVO_ENGINE_CALLBACK(OnStreamSubscribed, int64_t state, const char* sid, const SubscribeInfo* info);
RAVO_ENGINE_CALLBACK(OnLocalVideoSizeChanged, int64_t index, VideoFrameInfo info);
RAVO_ENGINE_CALLBACK(OnRemoteVideoSizeChanged, const RemoteStreamKey* key, VideoFrameInfo info);

/* ---- Stream calls: results are ignored, OnStreamSubscribed tells ---- */

/* media: 1 audio alone, 3 audio and video; the third argument is 0. */
RAVO_ENGINE_API int64_t RAVO_CALL Subscribe(const char* sid, int64_t media, int64_t reserved,
                                            const SubscribeConfig* config);
/* media: 2, video; the third argument is 0. */
RAVO_ENGINE_API int64_t RAVO_CALL Unsubscribe(const char* sid, int64_t media, int64_t reserved);

/* ---- Device callbacks ---- */

RAVO_ENGINE_CALLBACK(OnErrorReport, const char* text1, const char* text2);
RAVO_ENGINE_CALLBACK(OnDetectError, int64_t code);
RAVO_ENGINE_CALLBACK(OnDoctorEventTracking, int64_t value);
/* Only the flag is passed on. */
RAVO_ENGINE_CALLBACK(OnAudioServiceStateUpdated, int64_t reserved, bool state);
RAVO_ENGINE_CALLBACK(OnRecordingVolumeChange, int64_t volume);
RAVO_ENGINE_CALLBACK(OnLocalAudioStateChanged, int64_t state, int64_t error);
/* Three lists, each its count first here. The client sees the third list before the second. */
RAVO_ENGINE_CALLBACK(OnDeviceAdded, int64_t deviceType, int32_t count1, const DeviceInfo* list1, int32_t count2,
                     const DeviceInfo* list2, int32_t count3, const DeviceInfo* list3);
RAVO_ENGINE_CALLBACK(OnDeviceRemoved, int64_t deviceType, int32_t count1, const DeviceInfo* list1, int32_t count2,
                     const DeviceInfo* list2, int32_t count3, const DeviceInfo* list3);
RAVO_ENGINE_CALLBACK(OnDeviceSetSuccess, int64_t deviceType, const char* deviceId, bool flag1, bool flag2);
RAVO_ENGINE_CALLBACK(OnDeviceChange, DeviceInfo device, bool flag);
RAVO_ENGINE_CALLBACK(OnChangeDeviceConfirm, int64_t deviceType, const DeviceInfo* devices, int32_t count);
RAVO_ENGINE_CALLBACK(OnPlaybackVolumeChange, int64_t volume);
RAVO_ENGINE_CALLBACK(OnSystemDefaultDeviceChange, int64_t deviceType, DeviceInfo device1, DeviceInfo device2);
RAVO_ENGINE_CALLBACK(OnRtcSdkError, int64_t code, const char* text);
RAVO_ENGINE_CALLBACK(OnRtcSdkWarning, int64_t code, const char* text);
RAVO_ENGINE_CALLBACK(OnServerMemoryWarn, int64_t value);
RAVO_ENGINE_CALLBACK(OnRecordingMuteStateChange, bool mute);

/* ---- Device calls: a device type is a number of the engine's, which Ravo passes through ---- */

RAVO_ENGINE_API int32_t RAVO_CALL GetScreenRecordAuthorizationStatus(void);
RAVO_ENGINE_API int32_t RAVO_CALL GetMicrophoneAuthorizationStatus(void);
RAVO_ENGINE_API int32_t RAVO_CALL GetCameraAuthorizationStatus(void);
RAVO_ENGINE_API int32_t RAVO_CALL GetAccessibilityAuthorizationStatus(void);
RAVO_ENGINE_API void RAVO_CALL OpenAccessibilityAuthorization(void);
RAVO_ENGINE_API void RAVO_CALL SetRestartCoreaudiodAuthorizationDescriptionForRtc(const char* description);
RAVO_ENGINE_API void RAVO_CALL SetRestartCoreaudiodAuthorizationDescription(const char* description);
RAVO_ENGINE_API void RAVO_CALL GetDevices(int64_t deviceType, DeviceList* out);
RAVO_ENGINE_API void RAVO_CALL FreeDeviceInfoList(DeviceInfo* devices, int32_t count);
RAVO_ENGINE_API int32_t RAVO_CALL SetDevice(int64_t deviceType, const char* deviceId, bool flag);
/* These two return false if there is no such device. */
RAVO_ENGINE_API bool RAVO_CALL GetDefaultDeviceInfo(int64_t deviceType, DeviceInfo* out);
RAVO_ENGINE_API bool RAVO_CALL GetCurrentDeviceInfo(int64_t deviceType, DeviceInfo* out);
/* Writes the id and its NUL into a buffer of 1024 bytes. */
RAVO_ENGINE_API void RAVO_CALL GetCurrentDeviceId(int64_t deviceType, char* buffer);
RAVO_ENGINE_API int64_t RAVO_CALL GetCurrentVolume(int64_t deviceType);
RAVO_ENGINE_API int32_t RAVO_CALL SetCurrentVolume(int64_t deviceType, int64_t volume);
RAVO_ENGINE_API bool RAVO_CALL IsCurrentRecordingDeviceMuted(void);
RAVO_ENGINE_API int32_t RAVO_CALL SetCurrentRecordingMute(bool mute);
RAVO_ENGINE_API bool RAVO_CALL IsCurrentPlayoutDeviceMuted(void);
RAVO_ENGINE_API bool RAVO_CALL GetCurrentPlaybackMute(void);
RAVO_ENGINE_API int32_t RAVO_CALL SetCurrentPlaybackMute(int64_t mute); /* a number, unlike the microphone's */
RAVO_ENGINE_API int32_t RAVO_CALL SetAppVolume(int64_t value1, int64_t value2);
RAVO_ENGINE_API int32_t RAVO_CALL EnableRecordAutoSwitch(bool enable);
RAVO_ENGINE_API int32_t RAVO_CALL ControlCamera(int64_t command);
RAVO_ENGINE_API int32_t RAVO_CALL StartControlCamera(int64_t command);
RAVO_ENGINE_API int32_t RAVO_CALL StopControlCamera(int64_t command);
RAVO_ENGINE_API void RAVO_CALL setVideoCaptureRotation(int64_t rotation);
RAVO_ENGINE_API void RAVO_CALL SetVideoDigitalZoomConfig(int64_t type, float size);
RAVO_ENGINE_API void RAVO_CALL SetVideoDigitalZoomControl(int64_t direction);
RAVO_ENGINE_API void RAVO_CALL StartVideoDigitalZoomControl(int64_t direction);
RAVO_ENGINE_API void RAVO_CALL StopVideoDigitalZoomControl(void);
RAVO_ENGINE_API void RAVO_CALL GetAudioServiceState(int64_t value); /* OnAudioServiceStateUpdated tells */
/* The text stays valid until the next call. */
RAVO_ENGINE_API const char* RAVO_CALL GetAudioPluginDeviceId(void);
RAVO_ENGINE_API void RAVO_CALL OpenCameraPreference(void);
RAVO_ENGINE_API void RAVO_CALL OpenScreenRecordPreference(void);
/* Results are ignored. */
RAVO_ENGINE_API int64_t RAVO_CALL StartAudioCapture(void);
RAVO_ENGINE_API int64_t RAVO_CALL StopAudioCapture(void);

#ifdef __cplusplus
}
#endif

#endif
