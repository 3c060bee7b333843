// What the engine is told at the start, and what the client is: both to the letter.
#include "ServerTest.h"

namespace integration {
namespace {

using testing::AllOf;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Something of each kind, and the values that come out other than they went in.
constexpr char kOptions[] =
    R"json("serverName":"Nero","appId":"app","mainProcessPid":7,"projectKey":"key",)json"
    R"json("hostName":"{\"rtc.host\":\"h\"}","userId":"u1","deviceId":"\"dev\"",)json"
    R"json("activeSpeakerConfig":{"tickTime":0.5,"rankBase":2},"subscribeMaxNumber":4,"logVersion":4294967298,)json"
    R"json("videoProfiles":[{"width":640,"height":360,"maxKbps":500,"frameRate":15,"codecMode":4294967299}],)json"
    R"json("deviceNameBlackList":["x","y"],"memDeviceNameBlackList":["z"],)json"
    R"json("deviceManagerConfig":{"enableCaptureCard":true},"leaveMeetingConfig":{"destroyTimeoutDuration":9},)json"
    R"json("rtcFgConfig":"{\"room.fg.rtc.a\":1.5,\"share.fg.rtc. b\":true,\"other\":2}",)json"
    R"json("vendorTypeConfig":{"vendorType":3,"isDataOversea":true,"serviceType":"s"},)json"
    R"json("proxyConfigs":[{"proxyType":1,"proxyIp":"host","proxyPort":8080}],"enableNV12":1)json";

// Entries and their arguments; a name alone is a registration. A word in capitals between @ stands for a text of the
// run, quoted as JSON.
const std::vector<std::string> kCalls = {
    R"(ServerOptionSetAppId "app")", R"(ServerOptionSetServerName "Nero")", R"(ServerOptionSetProjectKey "key")",
    R"(ServerOptionSetUserId "u1")", R"(ServerOptionSetDeviceId "\"dev\"")",
    R"(ServerOptionSetActiveSpeakerConfig {"tickTime":0.5,"sampleInterval":0.0,"maxRecordTime":0.0,)"
    R"("minSpeakerVolume":0.0,"timeBase":0.0,"rankBase":2.0})",
    R"(ServerOptionSetLogPath @FOLDER@)", R"(ServerOptionSetLogVersion 4294967298)",
    R"(ServerOptionSetEnableDeviceRemember false)", R"(ServerOptionSetEnableInitDevice true)",
    R"(ServerOptionSetEnableHotSwapDeviceAutoChange true)", R"(ServerOptionSetEnableDelayDeviceAddedAndRemoved false)",
    R"(ServerOptionSetDeviceManagerConfig 256)", R"(ServerOptionSetResourcePath "")", R"(ServerOptionSetResourceEnv 1)",
    R"(ServerOptionSetEffectDownloadConfig {"accessKey":"","host":"","platform":"","deviceType":"","channel":"",)"
    R"("deviceId":""})",
    R"(ServerOptionSetVideoProfiles [{"width":640,"height":360,"maxKbps":500,"frameRate":15,"scaleMode":0,)"
    R"("codecMode":4294967299}])",
    R"(ServerOptionSetScreenProfile {"width":0,"height":0,"maxKbps":0,"frameRate":0,"scaleMode":0,"codecMode":0})",
    R"(ServerOptionSetAppVersion "")", R"(ServerOptionSetDeviceNameBlackList ["x","y"])",
    R"(ServerOptionSetMemDeviceNameBlackList ["x","y"])",
    R"(ServerOptionSetIgnoreDefaultDeviceIds ["TessarinAudioDevice_UID"])", R"(ServerOptionSetExcludeDeviceType 0)",
    R"(ServerOptionSetLeaveMeetingConfig {"autoDestroyRTCEngine":false,"autoMuteLocalVideo":false,)"
    R"("destroyTimeoutDuration":9})",
    R"(ServerOptionSetRTCParams @PARAMS@)", R"(ServerOptionSetEnableVideoEnhance false)",
    R"(ServerOptionSetEnableSameAsSystem false)",
    R"json(ServerOptionSetDeviceSameAsSystemConfig {"deviceId":"SAME_AS_SYSTEM_ID",)json"
    R"json("deviceName":"SAME_AS_SYSTEM({{deviceId}})","fallbackDeviceName":"SAME_AS_SYSTEM"})json",
    R"(ServerOptionSetDefaultEnableLocalVideo true)",
    R"(ServerOptionSetRtcFgConfig "{\"room.fg.rtc.a\":1.5,\"share.fg.rtc. b\":true,\"other\":2}")",
    R"(ServerOptionSetEnableAutoPublish true)", R"(ServerOptionSetEnableRestartDaemon false)",
    R"(ServerOptionSetRTCParams "{\"rtc.host\":\"h\"}")",
    R"(ServerOptionSetRTCParams "{\"rtc.fg_config\":\"a=1,b=true\"}")",
    R"(ServerOptionSetRTCParams "\n              {\n                \"rtc.channel_profile\":16,\n)"
    R"(                \"rtc.env\" : 0,\n                \"rtc.is_oversea\":\n                {\n)"
    R"(                  \"isMediaOversea\":false,\n                  \"isDataOversea\":true\n                }\n)"
    R"(              }\n            ")",
    R"(ServerOptionSetProxyConfig [{"proxyType":1,"proxyIp":"host","proxyPort":8080,"unused1":"","unused2":""}])",
    R"(ServerOptionSetEnableShareMemorySlots false)", R"(ServerOptionSetEnableNv12 false)",
    R"(ServerOptionSetEnableCvPixelBuffer false)", R"(ServerOptionSetRTCParams "{\"rtc.srtp_profile\":8}")",
    R"(ServerOptionSetRTCParams "{\"rtc.device_id\":\"dev\"}")", "VemoraInit 3,0",
    // Devices.
    "OnErrorReport", "OnDetectError", "OnDoctorEventTracking", "OnAudioServiceStateUpdated", "OnRecordingVolumeChange",
    "OnLocalAudioStateChanged", "OnDeviceAdded", "OnDeviceRemoved", "OnDeviceSetSuccess", "OnDeviceChange",
    "OnChangeDeviceConfirm", "OnPlaybackVolumeChange", "OnSystemDefaultDeviceChange", "OnRtcSdkError",
    "OnRtcSdkWarning", "OnServerMemoryWarn", "OnRecordingMuteStateChange",
    // The meeting.
    "OnRtcSdkInit", "OnMyUidChange", "OnUserJoin", "OnUserLeave", "OnRoomStateChanged", "OnAudioRecordFormat",
    "OnNetworkQuality", "OnNetworkTypeChanged", "OnConnectionStateChanged", "OnAudioVolumeIndication",
    "OnFirstLocalVideoFrameCaptured", "OnFirstRemoteVideoFrameDecoded", "OnFirstRemoteAudioFrame",
    "OnLocalAudioVolumeIndication", "OnLocalVideoStateChanged", "OnLocalAudioStateChanged", "OnVolumeChange",
    "OnVemoraException", "OnUlvoMeriTrack", "RoomBinaryMessageReceived", "UserBinaryMessageReceived",
    "UserMessageReceived", "OnRtcDestroyStart", "OnRtcDestroyFinish", "OnLoginResult", "OnServerParamsSetResult",
    "OnServerMessageSendResult", "OnLogOut", "OnSysStats", "OnUserPublishStream", "OnUserUnpublishStream",
    "OnNetworkBandwidthEstimationResult", "OnAudioPlaybackDeviceTestVolume",
    // Screens.
    "OnScreenCaptureStatus", "OnShareCaptureCardSize", "OnDesktopThumbnail", "OnWindowThumbnail",
    "OnShareWindowChanged", "OnShareDesktopChanged", "OnAudioCapturerStart", "OnAudioCapturerStop",
    "OnAudioCapturerNoAccess", "OnAudioCapturerBeginInstall", "OnAudioCapturerCancelInstall",
    "OnAudioCapturerInstallSuccess", "OnAudioCapturerInstallFail", "OnScreenCastUserJoined", "OnScreenCastUserOffline",
    "OnScreenCastWarning", "OnScreenCastError", "OnScreenCastEnableShareAudio", "OnConnectionStateChanged",
    "OnScreenCaptureStartResult",
    // Streams.
    "OnMultiStreamRemoved", "OnMultiStreamAdded", "OnStreamSubscribed", "OnLocalVideoSizeChanged",
    "OnRemoteVideoSizeChanged", "OnServerVideoFrame", "OnServerScreenFrame", "OnVideoCommonFrame",
    // While clients may come.
    "VemoraInitRtc ", "VemoraInitDevice ", R"(SetRtcRuntimeParameter "","{\"rtc.service_type\": \"live\"}")"};

class StartTest : public ServerTest {
 protected:
  [[nodiscard]] std::string Filled(std::string text) const {
    text = Replaced(std::move(text), "@PIPE@", Quoted(server_->Pipe()));
    text = Replaced(std::move(text), "@FOLDER@", Quoted(server_->Folder()));
    return Replaced(std::move(text), "@PARAMS@", Quoted(server_->Params()));
  }
  // The line of the journal.
  [[nodiscard]] std::string LineOf(const std::string& call) const {
    const auto space = call.find(' ');
    const std::string arguments = space == std::string::npos ? R"("function")" : call.substr(space + 1);
    return R"({"entry":")" + call.substr(0, space) + R"(","args":[)" + Filled(arguments) + "]}";
  }
};

TEST_F(StartTest, TellsTheEngineAllOptionsAndTheClientWhatTheServerIs) {
  StartServer("", kOptions);
  ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1)) << server_->Host().Err();
  std::vector<std::string> expected;
  for (const auto& call : kCalls) expected.push_back(LineOf(call));
  EXPECT_THAT(server_->Journal(), ElementsAreArray(expected));

  session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
  ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
  EXPECT_EQ(Expect("connect"), R"(["vc"])");
  EXPECT_THAT(Expect("INIT"),
              AllOf(StartsWith(R"([{"serverState":{"myUid":"","isJoinMeeting":false,"roomId":"","serverName":"Nero",)"),
                    HasSubstr(Filled(R"("serverOpt":{"serverName":"Nero","ipcPath":@PIPE@,"appId":"app",)")),
                    HasSubstr(R"("logVersion":2,"RTCLogPath":"",)"),  // a number of the client's, cut
                    HasSubstr(R"("frameRate":15,"scaleMode":0,"codecMode":3}],"screenProfile":)"),
                    HasSubstr(Filled(R"("rtcParams":@PARAMS@,)")), HasSubstr(R"("enableNV12":true,)"),
                    EndsWith(R"("waitingSubscribe":[],"audioSubscribing":[],"subscribedInfo":[]}}])")));
}

// A client that comes while the engine still starts hears "connect" at once, and of the rest when it has started.
TEST_F(StartTest, AClientMayComeBeforeTheEngineHasStarted) {
  StartServer(R"("sim.delay":{"VemoraInitRtc":2000})");
  ASSERT_TRUE(server_->WaitForCalls("VemoraInitRtc", 1)) << server_->Host().Err();
  session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
  ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
  Expect("connect");
  EXPECT_TRUE(server_->Calls("VemoraInitDevice").empty());
  Expect("INIT");
  EXPECT_EQ(server_->Calls("SetRtcRuntimeParameter").size(), 1u);
}

}  // namespace
}  // namespace integration
