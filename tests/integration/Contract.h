#pragma once

#include <string>
#include <vector>

// The protocol's methods, written down once more: what a client may rely on, beside what the server's tables say.
// ContractTest holds it against a running server, DocsTest against docs/protocol.md.
namespace integration {

// Methods that are alike.
struct MethodGroup {
  // A letter each: s string, i int, b bool, f float, r record or list, x not read.
  const char* arguments;
  // null, number, int, bool, string, never, a record, [a list]; "=" and what it always is.
  const char* reply;
  // "Method>Entry,Entry" where the engine's entries are other than the method's name; "-" is none.
  const char* methods;
};

inline constexpr MethodGroup kMethods[] = {
    // Server.
    {"x", "null", "Connect>-"},
    {"r", "null", "MonitorAddProcess>- UpdateServerOption>-"},
    {"x", "ServerInformation", "GetInitInfo>- ForceBroadcastInit>-"},
    {"x", "[StreamStateRecord]", "FetchAllStreamInfo>-"},
    {"si", "StreamStateRecord", "FetchStreamInfo>-"},
    {"x", "ServerState", "FetchServerState>-"},
    {"i", "null", "SetFps"},
    // Meeting.
    {"", "null",
     "DestroyServer DestroyedRtcEngine Logout CancelMojiEffect>CancelAvatarEffect StopAudioPlaybackDeviceTest "
     "StopAudioDeviceRecordAndPlayTest StopAudioDevicePlayTest LeaveMeeting>LeaveRoom StartPreview>StartVideoCapture "
     "StopPreview>StopVideoCapture StartPreventDisplaySleep>-"},
    {"b", "null", "EnableMicAagc EnableBackgroundBlur EnableRnNoise SetLocalScreenFrameCallback"},
    {"bb", "null", "SetDefaultVideoOutputMode"},
    {"i", "null",
     "SetAecOption SetChannelProfile SetLocalVideoMirrorType SetLowLightAdjusted StartAudioDeviceRecordTest "
     "StartPowerMonitor>-"},
    {"ii", "null", "EnableLocalVolumeIndicator"},
    {"s", "null", "SendServerMessage UpdateLoginToken SetMicrosoftLibPath"},
    {"si", "null", "SetBackgroundImage StartAudioPlaybackDeviceTest"},
    {"", "number", "LeaveBreakDownRoom"},
    {"b", "number", "MuteLocalScreenAudio EnableLocalAudio EnableLocalVideo"},
    {"i", "number", "SetClientRole>SetUserVisibility"},
    {"s", "number", "SetPublishChannel"},
    {"sb", "number", "JoinBreakDownRoom"},
    {"ssss", "number", "LoginSetServerParams"},
    {"ssssxr", "number", "JoinMeeting>SetRtcRuntimeParameter,JoinRoom"},
    {"r", "number", "SetSubChannels"},
    {"r", "null", "SetVideoOutputMode>-"},
    {"b", "=0", "SetPlaybackDigitalMute>SetPlaybackVolume"},
    {"", "bool",
     "IsMuteLocalAudio IsMuteLocalVideo IsMacArm64 GetCurrentPlaybackMute IsCurrentPlayoutDeviceMuted "
     "IsCurrentRecordingDeviceMuted"},
    {"", "int", "GetMicrophoneAuthorizationStatus GetCameraAuthorizationStatus"},
    {"", "DevicePerformance", "GetDevicePerformanceInfos"},
    {"", "=true", "StartAudioLocalRecord>StartAudioCapture StopAudioLocalRecord>StopAudioCapture"},
    {"x", "null",
     "SetNsOption>- StartLocalAudioVolumeListen>- StopLocalAudioVolumeListen>- ForceFlipVideo>- ReleaseRtcMemory>- "
     "SyncWindowPos>- SetFgConfig>- EnableFaceBeauty>- SetVideoEnhanceEnable>-"},
    {"x", "=false", "IsWindowFullScreen>-"},
    {"x", "=0", "SetEnableKaMedia>-"},
    {"x", "never", "ShallowCopyRtcMemory>-"},
    // Screen sharing.
    {"i", "null", "ClearIgnoreWindow ClearIncludeWindow"},
    {"bi", "null",
     "EnableCursorShare ScShowCursor>SCShowCursor EnablePromptWindow ScEnableHighFps>SCEnableHighFps "
     "ScSetAutoActiveShareWindow>SCSetAutoActiveShareWindow"},
    {"ii", "null", "ScSetCaptureFps>SCSetCaptureFps SetScreenFrameType"},
    {"biii", "null", "SetExternalAudioSource"},
    {"ri", "null",
     "AddIgnoreWindow RemoveIgnoreWindow AddIncludeWindow RemoveIncludeWindow "
     "ScSetCaptureFrameResolutionLimit>SCSetCaptureFrameResolutionLimit "
     "ScSetScreenCaptureConfig>SCSetScreenCaptureConfig"},
    {"r", "null", "SetVideoCaptureConfig"},
    {"s", "number",
     "SetInstallAudioPluginAuthorizationDescription>setInstallAudioPluginAuthorizationDescription StopCaptureCard"},
    {"ii", "number",
     "GetDpiByPoint ShareDesktop>SetVideoSourceType,StartScreenCapture,SCPublishScreen "
     "ShareWindow>SetVideoSourceType,StartScreenCapture,SCPublishScreen"},
    {"sb", "number", "ShareCaptureCard"},
    {"ssb", "number", "StartCaptureCard"},
    {"b", "number", "PublishCaptureCard"},
    {"ib", "number", "StartScreenCapture"},
    {"", "number",
     "UnpublishCaptureCard StopScreenCapture ScSharePublishScreen>SCPublishScreen "
     "ScShareUnpublishScreen>SCUnpublishScreen"},
    {"i", "number",
     "StopShareScreen>StopScreenCapture,StopScreenAudioCapture,SCUnpublishScreen "
     "ScShareAudio>StartScreenAudioCapture,SCPublishScreen ScStopShareAudio>StopScreenAudioCapture,SCUnpublishScreen"},
    {"i", "ScreenRect", "ScGetCaptureRect>GetCaptureRect"},
    {"", "[DesktopInfo]", "ScGetDesktopList>SCGetDesktopList,FreeDesktopListVector"},
    {"", "[WindowRecord]", "ScGetWindowList>SCGetWindowList,FreeWindowListVector"},
    {"r", "[ThumbnailRecord]", "GetDesktopThumbnail>GetDesktopThumbnailAsyn GetWindowThumbnail>GetWindowThumbnailAsyn"},
    {"x", "null", "EnableHighFpsShareForVideoContent>- StartAudioMixing>- StopAudioMixing>-"},
    {"x", "never", "ScEnableDynamicFps>- ScEnableHighResolution>-"},
    // Devices.
    {"", "null",
     "OpenAccessibilityAuthorization StopVirtualCameraControl>StopVideoDigitalZoomControl OpenCameraPreference "
     "OpenScreenRecordPreference OpenAccessibilityPreference>OpenScreenRecordPreference "
     "OpenMicPreference>OpenScreenRecordPreference StartAudioCapture StopAudioCapture"},
    {"s", "null",
     "SetRestartCoreaudiodAuthorizationDescriptionForRtc SetRestartCoreaudiodAuthorizationDescription "
     "SetRestartVdcAssistantAuthorizationDescription>SetRestartCoreaudiodAuthorizationDescription"},
    {"i", "null",
     "VirtualCameraControl>SetVideoDigitalZoomControl StartVirtualCameraControl>StartVideoDigitalZoomControl "
     "GetCoreAudioStatus>GetAudioServiceState setVideoCaptureRotation"},
    {"if", "null", "SetCameraConfig>SetVideoDigitalZoomConfig"},
    {"", "int", "GetScreenRecordAuthorizationStatus GetAccessibilityAuthorizationStatus"},
    {"isb", "int", "SetDevice"},
    {"i", "number", "GetCurrentVolume"},
    {"ii", "int", "SetCurrentVolume SetAppVolume"},
    {"b", "int", "SetCurrentRecordingMute EnableRecordAutoSwitch"},
    {"i", "int", "SetCurrentPlaybackMute ControlCamera StartControlCamera StopControlCamera"},
    {"", "string", "GetAudioPluginDeviceId"},
    {"i", "[DeviceInfo]", "GetDevices>GetDevices,FreeDeviceInfoList"},
    {"i", "DeviceInfo", "GetDefaultDeviceInfo GetCurrentDeviceInfo"},
    {"i", "string", "GetCurrentDeviceId"},
    {"si", "=0", "StartPlayAudio>StartAudioMixing"},
    {"", "=0", "StopPlayAudio>StopAudioMixing"},
    {"x", "never", "StartMicrophoneTest>- StopMicrophoneTest>- StartSpeakerTest>- StopSpeakerTest>- SetSystemVolume>-"},
    // Streams.
    {"x", "SubscribeStatus", "GetSubscribeStatus>-"},
    {"i", "null", "SetSubscribeMaxNnumber>-"},
    {"x", "null", "UnSubscribe>-"},
    {"sr", "null", "UnSubscribeVideo>Unsubscribe,Subscribe"},
    {"siirs", "null", "SubscribeVideo>Subscribe"},
    {"ir", "null", "AckShareMemoryUpdate>-"},
    {"x", "[ShareMemoryInfo]", "GetShareMemoryInfo>-"},
    {"r", "null", "ClearShareMemory>-"},
};

// Calls of the methods above that need a word of their own; those that have none here just hand their arguments over.
struct ContractCase {
  const char* method;
  const char* arguments;
  const char* reply;  // "never"; a * stands for anything
  const char* calls;  // "Entry arguments | Entry arguments", as the journal has the arguments
};

inline constexpr char kInitCalls[] =
    R"(GetDevices 0,"memory" | GetCurrentDeviceId 0,"memory" | FreeDeviceInfoList "memory",1 | GetDevices 1,"memory" )"
    R"(| GetCurrentDeviceId 1,"memory" | FreeDeviceInfoList null,0 | GetDevices 2,"memory" )"
    R"(| GetCurrentDeviceId 2,"memory" | FreeDeviceInfoList null,0)";

// While every entry that has a result answers 0.
inline constexpr ContractCase kCases[] = {
    // Server.
    {"GetInitInfo", "[1.5]",
     R"({"serverState":{"myUid":"",*},"streamInfo":[],"deviceInfo":[{"currentDeviceId":"mic",*)", kInitCalls},
    {"ForceBroadcastInit", "[]", R"({"serverState":{*)", kInitCalls},
    {"FetchServerState", "[]",
     R"({"myUid":"","isJoinMeeting":false,"roomId":"","serverName":"","isEnableLocalVideo":false,)"
     R"("isStartPreview":false,"dynamicLayoutPerfEnable":false,"firstRemoteAudioFrame":[],"firstRemoteVideoFrame":[]})",
     ""},
    {"FetchAllStreamInfo", "[]", "[]", ""},
    {"FetchStreamInfo", R"(["nobody",1])",
     R"({"uid":"","sid":"","streamType":0,"frameStatus":0,"isSelf":false,"resolutions":[]})", ""},
    {"MonitorAddProcess", R"([[{"pid":7,"pname":"one","no_report":true}]])", "null", ""},
    {"MonitorAddProcess", "5", "null", ""},
    {"UpdateServerOption",
     R"({"rtcParams":"{\"p\":1}","enableNV12":true,"subscribeMaxNumber":3,"isRelease":true,)"
     R"("screenProfile":{"width":800,"height":600},"enableCvPixelBufferNV12":1,)"
     R"("proxyConfigs":[{"proxyType":2,"proxyIp":"host","proxyPort":80}]})",
     "null",
     R"(ServerOptionSetEnableNv12 false | ServerOptionSetEnableCvPixelBuffer false )"
     R"(| ServerOptionSetProxyConfig [{"proxyType":2,"proxyIp":"host","proxyPort":80,"unused1":"","unused2":""}] )"
     R"(| ServerOptionSetScreenProfile {"width":800,"height":600,"maxKbps":0,"frameRate":0,"scaleMode":0,"codecMode":0} )"
     R"(| ServerOptionSetRTCParams "{\"p\":1}")"},
    {"UpdateServerOption", R"([{"rtcParams":"{\"p\":1}"}])", "null", ""},  // an object inside an array changes nothing
    {"GetInitInfo", "[]", R"(*"enableNV12":true*"maxSubscribingNumber":10*)", kInitCalls},
    // Meeting.
    {"JoinMeeting", R"(["t","r","u","e",false,{"autoSubscribeVideoCount":5}])", "0",
     R"(SetRtcRuntimeParameter "","{\"rtc.common_extra_info\":\"{\\\"app_version\\\":\\\"1.2\\\",)"
     R"(\\\"service_type\\\":\\\"live\\\",\\\"is_oversea\\\":\\\"1\\\"}\"}" | JoinRoom "t","r",)"
     R"({"userId":"u","extraInfo":"e"},{"channelProfile":16,"reserved":0,"flag1":true,"flag2":true,"flag3":false})"},
    {"SetSubChannels", R"([{"channelName":"a","volumeScale":5000000000},{"channelName":"b"}])", "0",
     R"(SetSubChannels [{"channelName":"a","volumeScale":5000000000},{"channelName":"b","volumeScale":0}])"},
    {"SetSubChannels", R"([[{"channelName":"a","volumeScale":-1}],"x"])", "0",
     R"(SetSubChannels [{"channelName":"a","volumeScale":-1}])"},
    {"SetSubChannels", R"(["x"])", "0", "SetSubChannels []"},
    {"SetSubChannels", "[]", "0", "SetSubChannels []"},
    {"SetVideoOutputMode", R"([{"userId":"u","isScreen":1,"streamId":"s","enableShareMemory":true}])", "null", ""},
    {"SetVideoOutputMode", R"(["x"])", "null", ""},
    {"SetPlaybackDigitalMute", "[false]", "0", "SetPlaybackVolume 100"},
    {"GetDevicePerformanceInfos", "[]",
     R"({"memory":8192.0,"cpuCores":4,"cpuThreads":8,"cpuFrequency":2400.0,"cpuModel":"Simulated CPU",)"
     R"("gpuModel":"Simulated GPU","os":"Simulated OS","osVersion":"1.0","deviceModel":"Simulated Device"})",
     R"(GetDevicePerformanceInfos "memory")"},
    {"StartPowerMonitor", "[30]", "null", ""},
    {"StartPreventDisplaySleep", "[]", "null", ""},
    // Screen sharing.
    {"AddIgnoreWindow",
     R"({"ignoreType":3,"windowHandle":{"type_field":"t","data":[1,-2]},"ignoreTypeByPid":4,"windowPid":5,)"
     R"("windowTitles":["a","b"],"windowLevel":6,"windowHandleIntValue":5000000000})",
     "null",
     R"(AddIgnoreWindow {"ignoreType":3,"handleType":"t","handleData":[1,-2],"ignoreTypeByPid":4,"windowPid":5,)"
     R"("windowTitles":["a","b"],"windowLevel":6,"windowHandleIntValue":5000000000},0)"},
    {"RemoveIgnoreWindow", R"([{"windowPid":5,"windowTitles":["a"]},9])", "null",
     R"(RemoveIgnoreWindow {"ignoreType":1,"handleType":"","handleData":[],"ignoreTypeByPid":0,"windowPid":5,)"
     R"("windowTitles":["a"],"windowLevel":0,"windowHandleIntValue":0},9)"},
    {"AddIncludeWindow", "[]", "null",
     R"(AddIncludeWindow {"ignoreType":1,"handleType":"","handleData":[],"ignoreTypeByPid":0,"windowPid":0,)"
     R"("windowTitles":[],"windowLevel":0,"windowHandleIntValue":0},0)"},
    {"RemoveIncludeWindow", "7", "null",
     R"(RemoveIncludeWindow {"ignoreType":1,"handleType":"","handleData":[],"ignoreTypeByPid":0,"windowPid":0,)"
     R"("windowTitles":[],"windowLevel":0,"windowHandleIntValue":0},7)"},
    {"ScSetCaptureFrameResolutionLimit", R"([{"maxResolutionWidth":5000000000,"maxResolutionHeight":2},3])", "null",
     R"(SCSetCaptureFrameResolutionLimit {"maxResolutionWidth":5000000000,"maxResolutionHeight":2},3)"},
    {"ScSetScreenCaptureConfig",
     R"({"scFramePublishKeepAliveIntervalMs":1,"scMovedWindowStableKeepMinDurationTimeMs":2})", "null",
     R"(SCSetScreenCaptureConfig {"scFramePublishKeepAliveIntervalMs":1,)"
     R"("scMovedWindowStableKeepMinDurationTimeMs":2},0)"},
    {"SetVideoCaptureConfig", R"([{"width":64,"height":48,"frameRate":20,"capturePreference":4}])", "null",
     R"(SetVideoCaptureConfig {"width":64,"height":48,"frameRate":20,"capturePreference":4})"},
    {"ShareDesktop", "[5000000000,3]", "0",
     "SetVideoSourceType 1,0,0,0 | StartScreenCapture 5000000000,true,3 | SCPublishScreen 2,0"},
    {"ShareWindow", "4", "0", "SetVideoSourceType 1,0,0,0 | StartScreenCapture 4,false,4 | SCPublishScreen 2,0"},
    {"StopShareScreen", "[3]", "0", "StopScreenCapture 3 | StopScreenAudioCapture 3 | SCUnpublishScreen 3,0"},
    {"ScShareAudio", "[]", "0", "StartScreenAudioCapture 0 | SCPublishScreen 1,0"},
    {"ScShareAudio", "[3]", "never", "StartScreenAudioCapture 3"},
    {"ScGetCaptureRect", "[3]", R"({"x":0,"y":0,"width":0,"height":0})", R"(GetCaptureRect 3,"memory")"},
    {"ScGetDesktopList", "[]", R"([{"id":5,"handle":4101,"primary":1,"x":-10,"y":20,"width":640,"height":480}])",
     R"(SCGetDesktopList "memory" | FreeDesktopListVector "memory",1)"},
    {"ScGetWindowList", "[]",  // texts that the engine lacks come out empty
     R"([{"id":6,"pid":60,"handle":8198,"application":"App","title":"Title","x":1,"y":2,"width":3,"height":4,)"
     R"("icon":"","url":""}])",
     R"(SCGetWindowList "memory" | FreeWindowListVector "memory",1)"},
    // Each kind is answered in its own order.
    {"GetDesktopThumbnail", R"({"width":10,"height":20})", R"([{"id":5,"val":"sim-thumbnail:5:10x20*"}])",
     "GetDesktopThumbnailAsyn 10,20"},
    {"GetDesktopThumbnail", R"([{"width":30,"height":40}])", R"([{"id":5,"val":"sim-thumbnail:5:30x40*"}])",
     "GetDesktopThumbnailAsyn 30,40"},
    {"GetWindowThumbnail", R"([{"width":50,"height":60}])", R"([{"id":6,"val":"sim-thumbnail:6:50x60*"}])",
     "GetWindowThumbnailAsyn 50,60"},
    // Devices.
    {"setVideoCaptureRotation", "[90]", "handle not found nameSetVideoCaptureRotation", ""},  // no key reaches it
    {"SetCameraConfig", "[5000000000,0.5]", "null", "SetVideoDigitalZoomConfig 5000000000,0.5"},
    {"SetCameraConfig", "[1,0.1]", "null", "SetVideoDigitalZoomConfig 1,0.10000000149011612"},
    {"SetCameraConfig", "[1,2]", "null", "SetVideoDigitalZoomConfig 1,0.0"},
    {"SetCameraConfig", "3", "null", "SetVideoDigitalZoomConfig 3,0.0"},
    {"GetAudioPluginDeviceId", "[]", R"("sim-audio-plugin")", "GetAudioPluginDeviceId "},
    {"GetDevices", "[0]",
     R"([{"deviceName":"Mic","deviceId":"mic","containerId":"","deviceVid":4617,"devicePid":1,"deviceType":0,)"
     R"("isBuiltin":true,"isBluetooth":false,"isDisplayAudio":false,"isVirtual":false,"isUnknown":false,)"
     R"("canGetVolume":true,"canSetVolume":true,"stereoMode":false,"handsFreeMode":false,"canMove":false,)"
     R"("canZoom":false,"canAutoFraming":false}])",
     R"(GetDevices 0,"memory" | FreeDeviceInfoList "memory",1)"},
    {"GetDevices", "5000000000", "[]", R"(GetDevices 5000000000,"memory" | FreeDeviceInfoList null,0)"},
    {"GetDefaultDeviceInfo", "[1]", "null", R"(GetDefaultDeviceInfo 1,"memory")"},
    {"GetCurrentDeviceInfo", "[1]", "null", R"(GetCurrentDeviceInfo 1,"memory")"},
    {"GetCurrentDeviceId", "[0]", R"("mic")", R"(GetCurrentDeviceId 0,"memory")"},
    {"GetCurrentDeviceId", "[2]", R"("")", R"(GetCurrentDeviceId 2,"memory")"},
    {"StartPlayAudio", R"(["file",4294967303])", "0",
     R"(StartAudioMixing "file",{"reserved1":0,"reserved2":0,"value":7,"reserved3":0})"},
    // Streams. One that nobody knows is remembered.
    {"SetSubscribeMaxNnumber", "[7]", "null", ""},
    {"SubscribeVideo", R"(["none",1,0,{"subscribeClientId":"a"},"b"])", "null", ""},
    {"UnSubscribeVideo", R"(["none",{"subscribeClientId":"b"}])", "null",
     R"(Unsubscribe "none",2,0 | Subscribe "none",1,0,{"frameRate":0,"width":0,"height":0,)"
     R"("unused":[-1,-1,-1,-1,-1,-1,-1]})"},
    {"GetSubscribeStatus", "[]",
     R"({"maxSubscribingNumber":7,"subscribing":[],"unSubscribing":[],"subscribed":[],"waitingSubscribe":[],*)", ""},
    {"AckShareMemoryUpdate", R"([1,[{"sid":"none"}]])", "null", ""},
    {"AckShareMemoryUpdate", "[2]", "null", ""},
    {"AckShareMemoryUpdate", R"([9,"x"])", "null", ""},
    {"GetShareMemoryInfo", "[]", "[]", ""},
    {"ClearShareMemory", "[]", "null", ""},
    {"ClearShareMemory", R"({"sid":5})", "null", ""},
};

// While every entry that has a result answers -8589934591: as 32 bits 1, as a boolean true.
inline constexpr ContractCase kCasesOfFailure[] = {
    {"JoinMeeting", R"("x")", "-8589934591",
     R"(SetRtcRuntimeParameter "","{\"rtc.common_extra_info\":*}" | JoinRoom "x","x",{"userId":"x","extraInfo":"x"},)"
     R"({"channelProfile":16,"reserved":0,"flag1":true,"flag2":true,"flag3":false})"},
    {"FetchServerState", "[]", R"({"myUid":"x","isJoinMeeting":true,"roomId":"x",*)", ""},
    {"SetSubChannels", "[]", "-8589934591", "SetSubChannels []"},
    {"SetPlaybackDigitalMute", "true", "0", "SetPlaybackVolume 0"},
    {"ScSharePublishScreen", "[5,6]", "-8589934591", "SCPublishScreen 3,0"},
    {"ScShareUnpublishScreen", "[5,6]", "-8589934591", "SCUnpublishScreen 3,0"},
    {"StartScreenCapture", "[5000000000,true,3]", "-8589934591", "StartScreenCapture 5000000000,true,0"},
    {"StopScreenCapture", "[3]", "-8589934591", "StopScreenCapture 0"},
    {"ShareDesktop", "[1]", "-8589934591", "SetVideoSourceType 1,0,0,0 | StartScreenCapture 1,true,0"},
    {"ShareWindow", "[1,3]", "-8589934591", "SetVideoSourceType 1,0,0,0 | StartScreenCapture 1,false,3"},
    {"StopShareScreen", "[3]", "-8589934591", "StopScreenCapture 3"},
    {"ScShareAudio", "[3]", "-8589934591", "StartScreenAudioCapture 3"},
    {"ScStopShareAudio", "[3]", "-8589934591", "StopScreenAudioCapture 3"},
    {"ScStopShareAudio", "[]", "-8589934591", "StopScreenAudioCapture 0 | SCUnpublishScreen 1,0"},
    {"GetDefaultDeviceInfo", "[1]", R"({"deviceName":"","deviceId":"","containerId":"","deviceVid":0,*)",
     R"(GetDefaultDeviceInfo 1,"memory")"},
    {"GetCurrentDeviceInfo", "[1]", R"({"deviceName":"","deviceId":"","containerId":"","deviceVid":0,*)",
     R"(GetCurrentDeviceInfo 1,"memory")"},
    {"StartPlayAudio", "[]", "0", R"(StartAudioMixing "",{"reserved1":0,"reserved2":0,"value":0,"reserved3":0})"},
    {"StopPlayAudio", "[]", "0", "StopAudioMixing "},
    // A stop that fails in its second part.
    {"UpdateServerOption", R"({"rtcParams":"{\"sim.results\":{\"StopScreenCapture\":0,\"SCUnpublishScreen\":4}}"})",
     "null", R"(ServerOptionSetRTCParams "{\"sim.results\":{\"StopScreenCapture\":0,\"SCUnpublishScreen\":4}}")"},
    {"StopShareScreen", "[3]", "-8589934591", "StopScreenCapture 3 | StopScreenAudioCapture 3"},
    {"ScStopShareAudio", "[]", "4", "StopScreenAudioCapture 0 | SCUnpublishScreen 1,0"},
};

// One method of the groups above.
struct Method {
  std::string name;
  std::string arguments;
  std::string reply;
  std::vector<std::string> entries;
};

[[nodiscard]] std::vector<Method> AllMethods();

// The pieces of a text between separators; none of an empty text.
[[nodiscard]] std::vector<std::string> Split(const std::string& text, const std::string& separator);

}  // namespace integration
