// Every callback of the engine, as the client hears of it.
#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "Contract.h"
#include "ServerTest.h"
#include "client/Protocol.h"
#include "common/RapidJson.h"

namespace integration {
namespace {

using ravo::client::Event;

// What the engine reports, and the events that come of it: "KEY content | KEY content". A word between @ stands for a
// record, below.
struct Report {
  const char* entry;
  const char* arguments;
  const char* events;
  bool isOnce = false;  // what comes of it depends on what came before
};

constexpr Report kReports[] = {
    // Devices.
    {"OnErrorReport", R"(["one","two \"2\""])", R"(ON_ERROR_REPORT ["one", "two \"2\""])"},
    {"OnDetectError", "[-1]", "ON_DETECT_ERROR [-1]"},
    {"OnDoctorEventTracking", "[2]", "ON_DOCTOR_EVENT_TRACKING [2]"},
    {"OnAudioServiceStateUpdated", "[5,true]", "ON_CORE_AUDIO_STATUS_UPDATED [true]"},
    {"OnRecordingVolumeChange", "[6]", "ON_RECORDING_VOLUME_CHANGED [6]"},
    {"OnLocalAudioStateChanged", "[7,8]", "ON_LOCAL_AUDIO_STATE_CHANGED [7, 8]"},
    {"OnDeviceAdded", "[1,[@x@],[],[@y@,@z@]]", "DEVICE_ADDED [1, [@x@], [@y@,@z@], []]"},
    {"OnDeviceRemoved", "[2,[@x@],[@y@],[]]", "DEVICE_REMOVED [2, [@x@], [], [@y@]]"},
    {"OnDeviceSetSuccess", R"([1,"id",true,false])", R"(DEVICE_SET_SUCCESS [1, "id", true, false])"},
    {"OnDeviceChange", "[@x@,true]", "DEVICE_CHANGE [@x@, true]"},
    {"OnChangeDeviceConfirm", "[3,[@x@,@y@]]", "CHANGE_DEVICE_CONFIRM [3, [@x@,@y@]]"},
    {"OnPlaybackVolumeChange", "[9]", "PLAYBACK_VOLUME_CHANGE [9]"},
    {"OnSystemDefaultDeviceChange", "[0,@x@,@y@]", "SYSTEM_DEFAULT_DEVICE_CHANGE [0, @x@, @y@]"},
    {"OnRtcSdkError", R"([-7,"text"])", R"(RTC_SDK_ERROR [-7, "text"])"},
    {"OnRtcSdkWarning", R"([-8,"text"])", R"(RTC_SDK_WARNING [-8, "text"])"},
    {"OnRtcSdkWarning", "[-8,null]", "RTC_SDK_WARNING [-8]"},  // a text that is missing is left out
    {"OnServerMemoryWarn", "[10]", "SERVER_MEMORY_WARN [10]"},
    {"OnRecordingMuteStateChange", "[false]", "RECORDING_MUTE_STATE_CHANGE [false]"},
    // The meeting.
    {"OnRtcSdkInit", "[]", "RTC_SDK_INIT []"},
    {"OnMyUidChange", R"(["m\u00e9"])", "MY_UID_CHANGE [\"m\u00e9\"]"},
    {"OnMyUidChange", "[null]", "MY_UID_CHANGE []"},
    {"OnUserJoin", R"(["ann",1152921504606846976])", R"(USER_JOIN ["ann", 1.152921504606847e+18])"},
    {"OnUserJoin", "[null,999999999999999]", "USER_JOIN [999999999999999]"},
    {"OnUserLeave", R"(["ann",-3])", R"(USER_LEAVE ["ann", -3])"},
    {"OnRoomStateChanged", R"(["r","u",5,6,2,77])", R"(REJOIN_CHANNEL_SUCCESS ["r", "u", 77])"},
    {"OnRoomStateChanged", R"(["r","u",1,1,0,77])", ""},
    {"OnRoomStateChanged", R"(["r","u",2,2,3,77])", ""},
    {"OnRoomStateChanged", R"(["r","u",2,2,1,77])", ""},  // nobody has joined
    {"OnAudioRecordFormat", "[1,2,3]", "AUDIO_RECORD_FORMAT [1, 2, 3]"},
    {"OnNetworkQuality", "[@LOCAL@,[@REMOTE@,@REMOTE@]]", "NETWORK_QUALITY [@LOCAL@, [@REMOTE@,@REMOTE@]]"},
    {"OnNetworkQuality", "[@LOCAL@,[]]", "NETWORK_QUALITY [@LOCAL@, []]"},
    {"OnNetworkTypeChanged", "[4]", "NETWORK_TYPE_CHANGED [4]"},
    {"OnConnectionStateChanged", "[5]", "CONNECTION_STATE_CHANGED [5]"},
    {"OnAudioVolumeIndication", "[[@VOLUME@],3,4]", "AUDIO_VOLUME_CHANGE [[@VOLUME@], 3, 4]"},
    {"OnFirstLocalVideoFrameCaptured", "[1,@FRAME@]", "FIRST_LOCAL_VIDEO_FRAME_CAPTURED [1, @FRAME@]"},
    {"OnFirstRemoteVideoFrameDecoded", "[@KEY@,@FRAME@]", "FIRST_REMOTE_VIDEO_FRAME_DECODED [@KEY@, @FRAME@]"},
    {"OnFirstRemoteAudioFrame", R"(["ann",1])", R"(FIRST_REMOTE_AUDIO_FRAME ["ann", 1])"},
    {"OnLocalAudioVolumeIndication", R"([{"uid":"u","volume":1,"smoothVolume":5000000000,"linearVolume":3}])",
     R"(LOCAL_AUDIO_VOLUME_INDICATION [{"uid":"u","volume":1,"smoothVolume":5000000000,"linearVolume":3}])"},
    {"OnLocalVideoStateChanged", "[1,2]", "ON_LOCAL_VIDEO_STATE_CHANGED [1, 2]"},
    {"OnVolumeChange", "[1,true,false]", "ON_VOLUME_CHANGE [1, true, false]"},
    {"OnVemoraException", R"(["a \"b\""])", R"(ON_VEMORA_EXCEPTION ["a \"b\""])"},
    {"OnUlvoMeriTrack",
     R"(["ev",[{"key":"k","value":"1"},{"key":"meeting_id","value":"m"},{"key":"timestamp","value":"5"},)"
     R"({"key":"k","value":"2"}]])",
     R"(MERI_TRACK_LIST [[{"key":"ev","value":"[{\"meeting_id\":\"m\",\"timestamp\":NOW,)"
     R"(\"perf_content\":{\"k\":\"1\"}}]"}]])"},
    {"OnUlvoMeriTrack", R"(["ev",[]])",
     R"(MERI_TRACK_LIST [[{"key":"ev","value":"[{\"meeting_id\":\"\",\"timestamp\":NOW,\"perf_content\":{}}]"}]])"},
    {"RoomBinaryMessageReceived", R"(["12345"])", "ROOM_BINARY_MESSAGE_RECEIVED [5]"},
    {"UserBinaryMessageReceived", R"(["u","123"])", R"(USER_BINARY_MESSAGE_RECEIVED ["u", 3])"},
    {"UserMessageReceived", R"(["u","m"])", ""},
    {"OnRtcDestroyStart", "[]", "RTC_DESTROY_START []"},
    {"OnRtcDestroyFinish", "[]", "RTC_DESTROY_FINISH []"},
    {"OnLoginResult", R"(["u",1,2])", R"(ON_LOGIN_RESULT ["u", 1, 2])"},
    {"OnServerParamsSetResult", "[1]", "ON_SERVER_PARAMS_SET_RESULT [1]"},
    {"OnServerMessageSendResult", "[1,2]", "ON_SERVER_MESSAGE_SEND_RESULT [1, 2]"},
    {"OnLogOut", "[]", "ON_LOGOUT []"},
    {"OnSysStats", "[@STATS@]", "ON_SYS_STATS [@STATS@]"},
    {"OnUserPublishStream", "[@KEY@,9,3]", ""},  // a screen
    {"OnUserPublishStream", R"([{"userId":"u"},9,3])", R"(USER_AUDIO_CHANGE ["u", 0] | USER_VIDEO_CHANGE ["u", 0])"},
    {"OnUserPublishStream", R"([{"userId":"u"},3,2])", R"(USER_VIDEO_CHANGE ["u", 0])"},
    {"OnUserUnpublishStream", R"([{"userId":"u"},1])", R"(USER_AUDIO_CHANGE ["u", 1])"},
    {"OnUserUnpublishStream", R"([{"userId":"u"},4])", ""},
    {"OnNetworkBandwidthEstimationResult", "[@BAND@]", "NETWORK_BANDWIDTH_ESTIMATION [@BAND@]"},
    {"OnAudioPlaybackDeviceTestVolume", "[11]", "ON_AUDIO_PLAYBACK_DEVICE_TEST_VOLUME [11]"},
    // Screen sharing.
    {"OnScreenCaptureStatus", "[1,2,3]", "SCREEN_CAPTURE_STATUS [1, 2, 3]"},
    {"OnShareCaptureCardSize", "[4,5,6]", "SHARE_CAPTURE_CARD_SIZE [4, 5, 6]"},
    {"OnDesktopThumbnail", R"([[{"id":1,"val":null}]])", ""},  // nobody waits for them
    {"OnWindowThumbnail", "[[]]", ""},
    {"OnShareWindowChanged", "[1,2,3]", "ON_SHARE_WINDOW_CHANGED [1, 2, 3]"},
    {"OnShareDesktopChanged", "[1,2]", "ON_SHARE_DESKTOP_CHANGED [1, 2]"},
    {"OnAudioCapturerStart", "[]", "AUDIO_CAPTURER_START []"},
    {"OnAudioCapturerStop", "[]", "AUDIO_CAPTURER_STOP []"},
    {"OnAudioCapturerNoAccess", "[]", "AUDIO_CAPTURER_NO_ACCESS []"},
    {"OnAudioCapturerBeginInstall", "[]", "AUDIO_CAPTURER_BEGIN_INSTALL []"},
    {"OnAudioCapturerCancelInstall", "[]", "AUDIO_CAPTURER_CANCEL_INSTALL []"},
    {"OnAudioCapturerInstallSuccess", "[]", "AUDIO_CAPTURER_INSTALL_SUCCESS []"},
    {"OnAudioCapturerInstallFail", "[]", "AUDIO_CAPTURER_INSTALL_FAIL []"},
    {"OnScreenCastUserJoined", R"(["u",1])", R"(ON_SCREEN_CAST_USER_JOINED ["u", 1])"},
    {"OnScreenCastUserOffline", R"(["u",2])", R"(ON_SCREEN_CAST_USER_OFFLINE ["u", 2])"},
    {"OnScreenCastWarning", "[3]", "ON_SCREEN_CAST_WARNING [3]"},
    {"OnScreenCastError", "[4]", "ON_SCREEN_CAST_ERROR [4]"},
    {"OnScreenCastEnableShareAudio", "[true]", "ON_SCREEN_CAST_ENABLE_SHARE_AUDIO [true]"},
    {"OnScreenCaptureStartResult", "[-5]", "ON_SCREEN_CAPTURE_ERROR [-5]"},
    // Streams; the pictures themselves are in other tests.
    {"OnMultiStreamAdded", R"(["v","v_0",7,[@SIZE@]])", R"(STREAM_ADDED ["v", "v_0", false, [@SIZE@]])"},
    {"OnMultiStreamAdded", R"(["s","s_1",1,[]])", R"(STREAM_ADDED ["s", "s_1", true, []])"},
    {"OnServerVideoFrame", R"(["v"])", R"(FIRST_FRAME_RECEIVED ["v_0", 1] | FRAME_STATUS_CHANGE ["v_0", "v", 1, 2])",
     true},
    {"OnServerScreenFrame", R"([""])", R"(FIRST_FRAME_RECEIVED ["s_1", 0] | FRAME_STATUS_CHANGE ["s_1", "s", 0, 2])",
     true},
    {"OnServerScreenFrame", R"(["s"])", ""},
    {"OnStreamSubscribed",
     R"([5,"v_0",{"subscribeVideo":true,"subscribeAudio":false,"videoIndex":5000000000,"layer":2}])",
     R"(STREAM_SUBSCRIBED [5, "v_0", {"subscribeVideo":true,"subscribeAudio":false,"videoIndex":5000000000,)"
     R"("layer":2}])"},
    {"OnLocalVideoSizeChanged", "[1,@FRAME@]", "LOCAL_VIDEO_SIZE_CHANGED [1, @FRAME@]"},
    {"OnRemoteVideoSizeChanged", "[@KEY@,@FRAME@]", "REMOTE_VIDEO_SIZE_CHANGED [@KEY@, @FRAME@]"},
    {"OnMultiStreamRemoved", R"(["none","none_1",1])",
     R"(SHARE_MEMORY_UPDATE [1, []] | STREAM_REMOVED ["none", "none_1", true])"},
};

constexpr std::pair<const char*, const char*> kRecords[] = {
    {"@LOCAL@", R"({"uid":"u","uplink_rtt_quality":1,"uplink_loss_quality":2,"uplink_abs_bw_quality":3,)"
                R"("uplink_rel_bw_quality":4,"uplink_quality":5,"downlink_rtt_quality":6,"downlink_loss_quality":7,)"
                R"("downlink_abs_bw_quality":8,"downlink_rel_bw_quality":9,"downlink_quality":10})"},
    {"@REMOTE@", R"({"uid":"v","uplink_quality":1,"downlink_quality":2})"},
    {"@VOLUME@", R"({"uid":"u","volume":1,"linearVolume":5000000000})"},
    {"@FRAME@",
     R"({"field_type":1,"format":2,"colorSpace":3,"width":5000000000,"height":5,"rotation":6,"renderTimeMs":7,)"
     R"("flip":true})"},
    {"@KEY@", R"({"roomId":"r","userId":"u","streamIndex":1})"},
    {"@STATS@",
     R"({"cpu_cores":8,"cpu_app_usage":0.5,"cpu_total_usage":1.25,"memory_usage":2.0,"full_memory":5000000000,)"
     R"("total_memory_usage":3,"free_memory":4,"memory_ratio":0.75,"total_memory_ratio":1e100})"},
    {"@BAND@",
     R"({"txEstimateBandwidth":5000000000,"txBandwidthStatus":1,"rxEstimateBandwidth":2,"rxBandwidthStatus":-3})"},
    {"@SIZE@", R"({"width":1280,"height":720,"maxKbps":5000000000,"frameRate":30,"scaleMode":1,"codecMode":2})"},
    {"@x@",
     R"({"deviceName":"X","deviceId":"x","containerId":"box","deviceVid":5000000000,"devicePid":-2,"deviceType":1,)"
     R"("isBuiltin":true,"isBluetooth":false,"isDisplayAudio":true,"isVirtual":false,"isUnknown":true,)"
     R"("canGetVolume":false,"canSetVolume":true,"stereoMode":false,"handsFreeMode":true,"canMove":false,)"
     R"("canZoom":true,"canAutoFraming":false})"},
    {"@y@", R"({"deviceName":"","deviceId":"y","containerId":"","deviceVid":0,"devicePid":0,"deviceType":0,)"
            R"("isBuiltin":false,"isBluetooth":true,"isDisplayAudio":false,"isVirtual":true,"isUnknown":false,)"
            R"("canGetVolume":true,"canSetVolume":false,"stereoMode":true,"handsFreeMode":false,"canMove":true,)"
            R"("canZoom":false,"canAutoFraming":true})"},
};

std::string Filled(std::string text) {
  text = Replaced(std::move(text), "@z@", Replaced("@y@", "\"y\"", "\"z\""));
  for (const auto& [word, record] : kRecords) text = Replaced(std::move(text), word, record);
  return text;
}

// With the server's time as a word.
std::string TextOf(const Event& event) {
  constexpr std::string_view kName = R"(\"timestamp\":)";
  std::string content = event.content;
  const auto at = content.find(kName);
  if (at != std::string::npos) {
    const auto value = at + kName.size();
    const auto digits = content.find_first_not_of("0123456789", value) - value;
    if (digits == 13) content.replace(value, digits, "NOW");  // milliseconds since 1970
  }
  return event.key + ' ' + content;
}

// The kinds of a payload's elements: a letter each, as the documents name them, and as they come.
std::string KindsIn(const std::string& documented) {
  std::string kinds;
  for (const auto& element : Split(documented, ", ")) {
    const std::string type = element.substr(element.find(": ") + 2);
    kinds += type == "string" ? 's' : type == "number" ? 'n' : type == "bool" ? 'b' : type.starts_with('[') ? 'l' : 'r';
  }
  return kinds;
}
std::string KindsOf(const std::string& content) {
  rapidjson::Document payload;
  payload.Parse(content.data(), content.size());
  std::string kinds;
  for (const auto& value : payload.GetArray()) {
    kinds += value.IsString() ? 's' : value.IsNumber() ? 'n' : value.IsBool() ? 'b' : value.IsArray() ? 'l' : 'r';
  }
  return kinds;
}

TEST(Docs, NameThePayloadOfEveryEventAsItComes) {
  std::map<std::string, std::string> documented;
  std::set<std::string> unheard;
  for (const auto& event : ravo::client::Events()) {
    const std::string kinds = KindsIn(event.payload);
    EXPECT_EQ(documented.emplace(event.key, kinds).first->second, kinds) << event.key;
    unheard.insert(event.key);
  }
  for (const Report& report : kReports) {
    if (std::string_view(report.arguments).find("null") != std::string_view::npos) continue;  // leaves elements out
    for (const auto& event : Split(Filled(report.events), " | ")) {
      const std::string key = event.substr(0, event.find(' '));
      EXPECT_EQ(documented[key], KindsOf(event.substr(key.size() + 1))) << event;
      unheard.erase(key);
    }
  }
  // Those that need more than a callback are in the tests of the session, the meeting and the power.
  EXPECT_THAT(unheard,
              testing::UnorderedElementsAre("connect", "INIT", "ON_DISCONNECT", "LEAVE_MEETING_SUCCESS",
                                            "LOCAL_PREVIEW_STATUS", "SERVER_SUB_STARTED", "JOIN_CHANNEL_SUCCESS",
                                            "BATTERY_SAVING_MODE_CHANGE", "POWER_SOURCE_CHANGE_TO_AC",
                                            "POWER_REMAIN_CHANGE", "SYSTEM_RESUME_EVENT", "SYSTEM_SUSPEND_EVENT"));
}

class EventTest : public ServerTest {
 protected:
  void SetUp() override {
    StartServer();
    ASSERT_NO_FATAL_FAILURE(Connect());
    Call("Connect");  // behind what the server tells of itself
    static_cast<void>(Fire(""));
  }

  // The events that come of volleys, in their order, without the one behind the last volley.
  std::vector<std::string> Fire(const std::string& volleys) {
    SetParams(R"("sim.fire":[)" + volleys + (volleys.empty() ? "" : ",") +
              R"({"entry":"OnUserLeave","args":["nobody",0]}])");
    std::vector<std::string> events;
    while (const auto event = session_->WaitEvent("", kBound)) {
      events.push_back(TextOf(*event));
      if (events.back() == R"(USER_LEAVE ["nobody", 0])") break;
    }
    EXPECT_FALSE(events.empty());
    if (!events.empty()) events.pop_back();
    return events;
  }

  // All reports, each with these members.
  static std::string Volleys(const std::string& members) {
    std::string volleys;
    for (const Report& report : kReports) {
      volleys += volleys.empty() ? "" : ",";
      volleys += R"({"entry":)" + Quoted(report.entry) + R"(,"args":)" + Filled(report.arguments) + members + '}';
    }
    return volleys;
  }
};

TEST_F(EventTest, TheClientHearsOfEveryCallbackInItsOrder) {
  std::vector<std::string> expected;
  for (const Report& report : kReports) {
    for (const auto& event : Split(Filled(report.events), " | ")) expected.push_back(event);
  }
  const auto heard = Fire(Volleys(""));
  for (std::size_t i = 0; i < std::min(heard.size(), expected.size()); ++i) ASSERT_EQ(heard[i], expected[i]);
  EXPECT_EQ(heard.size(), expected.size());
  EXPECT_TRUE(server_->WaitForLog("nobody waits for thumbnails", 2));
}

TEST_F(EventTest, NoneIsLostOrTornWhenManyThreadsReport) {
  constexpr int kThreads = 4;
  constexpr int kTimes = 5;
  std::map<std::string, int> expected;
  std::map<std::string, int> unsure;
  for (const Report& report : kReports) {
    for (const auto& event : Split(Filled(report.events), " | ")) {
      (report.isOnce ? unsure : expected)[event] += kThreads * kTimes;
    }
  }
  std::map<std::string, int> heard;
  for (const auto& event : Fire(Volleys(R"(,"threads":4,"times":5)"))) {
    if (!unsure.contains(event)) ++heard[event];
  }
  for (const auto& [event, count] : expected) EXPECT_EQ(heard[event], count) << event;
  EXPECT_EQ(heard.size(), expected.size());
}

// Two users of one session, whose requests are many, while the engine reports 20,000 events as fast as it can.
TEST_F(EventTest, RequestsAndEventsDoNotLoseOneAnother) {
  constexpr int kBatches = 20;
  constexpr int kBatch = 1000;
  End();
  StartServer();
  ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1));
  std::map<std::string, int> heard;  // the session's thread alone, until all are there
  std::atomic<int> count{0};
  session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
  session_->AddListener([&](const Event& event) {
    if (event.key != "USER_JOIN") return;
    ++heard[event.content];
    ++count;
  });
  ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
  std::string volleys;
  std::map<std::string, int> expected;
  for (int i = 0; i < kBatches; ++i) {
    const std::string batch = std::to_string(i);
    volleys += (i == 0 ? "" : ",") + (R"({"entry":"OnUserJoin","threads":4,"times":250,"args":["u",)" + batch + "]}");
    expected["[\"u\", " + batch + "]"] = kBatch;
  }
  SetParams(R"("sim.fire":[)" + volleys + "]");

  const auto user = [&](std::vector<int>& answered) {
    const auto end = std::chrono::steady_clock::now() + 3 * kBound;  // an emulator takes its time
    const auto done = [&] { return count >= kBatches * kBatch || std::chrono::steady_clock::now() > end; };
    for (int call = 0; call < 100 || !done(); call += 10) {
      for (int i = 0; i < 9; ++i) {
        session_->CallAsync("GetSubscribeStatus", "[]",
                            [&answered, n = call + i](const auto& reply) { answered.push_back(reply.Ok() ? n : -1); });
      }
      if (!session_->Call("Connect", "[]", kBound).Ok()) break;
      answered.push_back(call + 9);
    }
  };
  std::vector<int> answered[2];
  std::thread other(user, std::ref(answered[1]));
  user(answered[0]);
  other.join();
  EXPECT_EQ(heard, expected);
  for (const auto& numbers : answered) {
    ASSERT_GE(numbers.size(), 100u);
    for (std::size_t i = 0; i < numbers.size(); ++i) ASSERT_EQ(numbers[i], static_cast<int>(i));
  }
}

}  // namespace
}  // namespace integration
