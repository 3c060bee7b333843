// How a server starts, what the engine and the client are told then, and how it ends, with nothing of it left.
#include "Contract.h"
#include "ServerTest.h"
#include "manager/Tables.h"

namespace integration {
namespace {

using namespace TESSARIN_LUMARC;
using namespace testing;

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

// Entries and their arguments. A word in capitals between @ stands for a text of the run, quoted as JSON.
const std::vector<std::string> kFirstCalls = {
    R"(ServerOptionSetAppId "app")",
    R"(ServerOptionSetServerName "Nero")",
    R"(ServerOptionSetProjectKey "key")",
    R"(ServerOptionSetUserId "u1")",
    R"(ServerOptionSetDeviceId "\"dev\"")",
    R"(ServerOptionSetActiveSpeakerConfig {"tickTime":0.5,"sampleInterval":0.0,"maxRecordTime":0.0,)"
    R"("minSpeakerVolume":0.0,"timeBase":0.0,"rankBase":2.0})",
    R"(ServerOptionSetLogPath @FOLDER@)",
    R"(ServerOptionSetLogVersion 4294967298)",
    R"(ServerOptionSetEnableDeviceRemember false)",
    R"(ServerOptionSetEnableInitDevice true)",
    R"(ServerOptionSetEnableHotSwapDeviceAutoChange true)",
    R"(ServerOptionSetEnableDelayDeviceAddedAndRemoved false)",
    R"(ServerOptionSetDeviceManagerConfig 256)",
    R"(ServerOptionSetResourcePath "")",
    R"(ServerOptionSetResourceEnv 1)",
    R"(ServerOptionSetEffectDownloadConfig {"accessKey":"","host":"","platform":"","deviceType":"","channel":"",)"
    R"("deviceId":""})",
    R"(ServerOptionSetVideoProfiles [{"width":640,"height":360,"maxKbps":500,"frameRate":15,"scaleMode":0,)"
    R"("codecMode":4294967299}])",
    R"(ServerOptionSetScreenProfile {"width":0,"height":0,"maxKbps":0,"frameRate":0,"scaleMode":0,"codecMode":0})",
    R"(ServerOptionSetAppVersion "")",
    R"(ServerOptionSetDeviceNameBlackList ["x","y"])",
    R"(ServerOptionSetMemDeviceNameBlackList ["x","y"])",
    R"(ServerOptionSetIgnoreDefaultDeviceIds ["TessarinAudioDevice_UID"])",
    R"(ServerOptionSetExcludeDeviceType 0)",
    R"(ServerOptionSetLeaveMeetingConfig {"autoDestroyRTCEngine":false,"autoMuteLocalVideo":false,)"
    R"("destroyTimeoutDuration":9})",
    R"(ServerOptionSetRTCParams @PARAMS@)",
    R"(ServerOptionSetEnableVideoEnhance false)",
    R"(ServerOptionSetEnableSameAsSystem false)",
    R"json(ServerOptionSetDeviceSameAsSystemConfig {"deviceId":"SAME_AS_SYSTEM_ID",)json"
    R"json("deviceName":"SAME_AS_SYSTEM({{deviceId}})","fallbackDeviceName":"SAME_AS_SYSTEM"})json",
    R"(ServerOptionSetDefaultEnableLocalVideo true)",
    R"(ServerOptionSetRtcFgConfig "{\"room.fg.rtc.a\":1.5,\"share.fg.rtc. b\":true,\"other\":2}")",
    R"(ServerOptionSetEnableAutoPublish true)",
    R"(ServerOptionSetEnableRestartDaemon false)",
    R"(ServerOptionSetRTCParams "{\"rtc.host\":\"h\"}")",
    R"(ServerOptionSetRTCParams "{\"rtc.fg_config\":\"a=1,b=true\"}")",
    R"(ServerOptionSetRTCParams "\n              {\n                \"rtc.channel_profile\":16,\n)"
    R"(                \"rtc.env\" : 0,\n                \"rtc.is_oversea\":\n                {\n)"
    R"(                  \"isMediaOversea\":false,\n                  \"isDataOversea\":true\n                }\n)"
    R"(              }\n            ")",
    R"(ServerOptionSetProxyConfig [{"proxyType":1,"proxyIp":"host","proxyPort":8080,"unused1":"","unused2":""}])",
    R"(ServerOptionSetEnableShareMemorySlots false)",
    R"(ServerOptionSetEnableNv12 false)",
    R"(ServerOptionSetEnableCvPixelBuffer false)",
    R"(ServerOptionSetRTCParams "{\"rtc.srtp_profile\":8}")",
    R"(ServerOptionSetRTCParams "{\"rtc.device_id\":\"dev\"}")",
    "VemoraInit 3,0"};

// Behind the registrations, while clients may come.
const std::vector<std::string> kLastCalls = {"VemoraInitRtc ", "VemoraInitDevice ",
                                             R"(SetRtcRuntimeParameter "","{\"rtc.service_type\": \"live\"}")"};

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
    return R"({"entry":")" + call.substr(0, space) + R"(","args":[)" + Filled(call.substr(space + 1)) + "]}";
  }
};

TEST_F(StartTest, TellsTheEngineAllOptionsAndTheClientWhatTheServerIs) {
  ASSERT_NO_FATAL_FAILURE(StartServer("", kOptions));
  std::vector<std::string> expected;
  for (const auto& call : kFirstCalls) expected.push_back(LineOf(call));
  for (const auto rows : {DeviceEventRows(), MeetingEventRows(), ScreenEventRows(), StreamEventRows()}) {
    for (const auto& row : rows) expected.push_back(LineOf(row.registration + std::string(R"( "function")")));
  }
  for (const auto& call : kLastCalls) expected.push_back(LineOf(call));
  EXPECT_THAT(server_->Journal(), ElementsAreArray(expected));

  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_THAT(init_,
              AllOf(StartsWith(R"([{"serverState":{"myUid":"","isJoinMeeting":false,"roomId":"","serverName":"Nero",)"),
                    HasSubstr(Filled(R"("serverOpt":{"serverName":"Nero","ipcPath":@PIPE@,"appId":"app",)")),
                    HasSubstr(R"("logVersion":2,"RTCLogPath":"",)"),  // a number of the client's, cut
                    HasSubstr(R"("frameRate":15,"scaleMode":0,"codecMode":3}],"screenProfile":)"),
                    HasSubstr(Filled(R"("rtcParams":@PARAMS@,)")), HasSubstr(R"("enableNV12":true,)"),
                    EndsWith(R"("waitingSubscribe":[],"audioSubscribing":[],"subscribedInfo":[]}}])")));
  EXPECT_EQ(init_, "[" + Call("get_init_info") + "]");
  EXPECT_EQ(init_, "[" + Call("ForceBroadcastInit") + "]");
  EXPECT_FALSE(HasCome("INIT"));
  EXPECT_THAT(Call("FetchServerState"), HasSubstr(R"("roomId":"","serverName":"",)"));
}

// A client that comes while the engine still starts hears "connect" at once, and of the rest when it has started. Where
// the machine was busy for as long as the engine takes, a slower engine has to show it.
TEST_F(StartTest, AClientMayComeBeforeTheEngineHasStarted) {
  bool wasEarly = false;
  for (int delayMs = 500; delayMs < 60'000 && !wasEarly && !HasFailure(); delayMs *= 3) {
    End();
    server_ = std::make_unique<ServerProcess>(R"("sim.delay":{"VemoraInitRtc":)" + std::to_string(delayMs) + "}", "");
    ASSERT_TRUE(server_->WaitForCalls("VemoraInitRtc", 1)) << server_->Host().Err();
    session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
    ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
    Expect("connect");
    wasEarly = server_->Calls("VemoraInitDevice").empty();
    Expect("INIT");
    EXPECT_EQ(server_->Calls("SetRtcRuntimeParameter").size(), 1u);
  }
  EXPECT_TRUE(wasEarly);
}

class LifeTest : public ServerTest {
 protected:
  // How often the host was told that the server stops.
  std::size_t Farewells() { return Split(server_->Host().Out() + ' ', "the server stops").size() - 1; }
};

TEST_F(LifeTest, TheClientsDepartureEndsTheServerWithOneFarewell) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  Leave();
  EXPECT_EQ(Farewells(), 1u);
  EXPECT_EQ(server_->Journal().back(), R"({"entry":"DestroyServer","args":[]})");
}

TEST_F(LifeTest, AnInterruptEndsTheServerWithTwoFarewells) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  server_->Host().Interrupt();
  EXPECT_TRUE(session_->WaitClosed(kBound));
  Leave();
  EXPECT_EQ(Farewells(), 2u);
}

// Stops while frames come, requests are on their way and callbacks come from many threads.
TEST_F(LifeTest, EndsWellUnderLoadTimeAndAgain) {
  constexpr char kRoom[] = R"({"userId":"ann","encodings":[{"width":320,"height":180,"frameRate":200}]},)"
                           R"({"userId":"bob","streamIndex":1,"encodings":[{"frameRate":100}]})";
  for (int round = 0; round < LIFE_ROUNDS && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    ASSERT_NO_FATAL_FAILURE(JoinRoomOf(kRoom));
    Expect("STREAM_ADDED");
    Expect("STREAM_ADDED");
    Subscribe("ann_0");
    Subscribe("bob_1");
    const std::string path = NextUpdate("ann_0").slots[0].path;
    SetParams(R"("sim.fire":[{"entry":"OnVolumeChange","args":[1,true,false],"threads":4,"times":1000}])");
    for (int i = 0; i < 20; ++i) session_->CallAsync("GetInitInfo", "[]", [](const auto&) {});
    End();
    EXPECT_THAT(ServerProcess::SharedNames(path), IsEmpty());
  }
}

}  // namespace
}  // namespace integration
