// Every callback of the engine, as the client hears of it.
#include <atomic>
#include <map>
#include <set>
#include <thread>

#include "Contract.h"
#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Event;

// A callback and what the engine reports by it. A word between @ stands for a record of that name, below.
struct Report {
  std::string entry;
  std::string content;
  // The events that come of it: "KEY content | KEY content".
  std::string events;
  bool isOnce = false;  // what comes of it depends on what came before
};

// Callbacks with one event, which carries what they carry.
constexpr std::pair<const char*, const char*> kAlike[] = {
    {"OnRtcSdkInit OnRtcDestroyStart OnRtcDestroyFinish OnLogOut OnAudioCapturerStart OnAudioCapturerStop "
     "OnAudioCapturerNoAccess OnAudioCapturerBeginInstall OnAudioCapturerCancelInstall OnAudioCapturerInstallSuccess "
     "OnAudioCapturerInstallFail",
     "[]"},
    {"OnDetectError OnDoctorEventTracking OnRecordingVolumeChange OnPlaybackVolumeChange OnServerMemoryWarn "
     "OnNetworkTypeChanged OnConnectionStateChanged OnServerParamsSetResult OnAudioPlaybackDeviceTestVolume "
     "OnScreenCastWarning OnScreenCastError OnScreenCaptureStartResult",
     "[-5]"},
    {"OnLocalAudioStateChanged OnLocalVideoStateChanged OnServerMessageSendResult OnShareDesktopChanged", "[7, -8]"},
    {"OnAudioRecordFormat OnScreenCaptureStatus OnShareCaptureCardSize OnShareWindowChanged", "[1, 2, 3]"},
    {"OnRecordingMuteStateChange", "[false]"},
    {"OnScreenCastEnableShareAudio", "[true]"},
    {"OnVolumeChange", "[1, true, false]"},
    {"OnMyUidChange OnVemoraException", "[\"m\u00e9\\\"b\\\"\"]"},
    {"OnErrorReport", R"(["one", "two"])"},
    {"OnUserLeave OnFirstRemoteAudioFrame OnScreenCastUserJoined OnScreenCastUserOffline", R"(["ann", -3])"},
    {"OnLoginResult", R"(["ann", 1, 2])"},
    {"OnRtcSdkError OnRtcSdkWarning", R"([-7, "text"])"},
    {"OnDeviceSetSuccess", R"([1, "id", true, false])"},
    {"OnDeviceChange", "[@DeviceInfo1@, true]"},
    {"OnChangeDeviceConfirm", "[3, [@DeviceInfo1@,@DeviceInfo2@]]"},
    {"OnSystemDefaultDeviceChange", "[0, @DeviceInfo1@, @DeviceInfo2@]"},
    {"OnNetworkQuality", "[@LocalQuality1@, [@RemoteQuality1@,@RemoteQuality2@]]"},
    {"OnAudioVolumeIndication", "[[@VolumeInfo1@], 3, 4]"},
    {"OnLocalAudioVolumeIndication", "[@LocalVolumeInfo1@]"},
    {"OnFirstLocalVideoFrameCaptured OnLocalVideoSizeChanged", "[1, @VideoFrameInfo1@]"},
    {"OnFirstRemoteVideoFrameDecoded OnRemoteVideoSizeChanged", "[@RemoteStreamKey1@, @VideoFrameInfo1@]"},
    {"OnSysStats", "[@SysStats1@]"},
    {"OnNetworkBandwidthEstimationResult", "[@BandwidthEstimation1@]"},
    {"OnStreamSubscribed", R"([5, "v_0", @SubscribeInfo1@])"},
};

const std::vector<Report> kSpecial = {
    // Devices.
    {"OnAudioServiceStateUpdated", "[5,true]", "ON_CORE_AUDIO_STATUS_UPDATED [true]"},
    {"OnDeviceAdded", "[1,[@DeviceInfo1@],[],[@DeviceInfo2@,@DeviceInfo3@]]",
     "DEVICE_ADDED [1, [@DeviceInfo1@], [@DeviceInfo2@,@DeviceInfo3@], []]"},
    {"OnDeviceRemoved", "[2,[@DeviceInfo1@],[@DeviceInfo2@],[]]",
     "DEVICE_REMOVED [2, [@DeviceInfo1@], [], [@DeviceInfo2@]]"},
    {"OnRtcSdkWarning", "[-8,null]", "RTC_SDK_WARNING [-8]"},  // a text that is missing is left out
    // The meeting.
    {"OnUserJoin", R"(["ann",1152921504606846976])", R"(USER_JOIN ["ann", 1.152921504606847e+18])"},
    {"OnUserJoin", "[null,999999999999999]", "USER_JOIN [999999999999999]"},
    {"OnRoomStateChanged", R"(["r","u",5,6,2,77])", R"(REJOIN_CHANNEL_SUCCESS ["r", "u", 77])"},
    {"OnRoomStateChanged", R"(["r","u",1,1,0,77])", ""},
    {"OnRoomStateChanged", R"(["r","u",2,2,3,77])", ""},
    {"OnRoomStateChanged", R"(["r","u",2,2,1,77])", ""},  // nobody has joined
    {"OnUlvoMeriTrack",
     R"(["ev",[{"key":"k","value":"1"},{"key":"meeting_id","value":"m"},{"key":"timestamp","value":"5"},)"
     R"({"key":"k","value":"2"}]])",
     R"(MERI_TRACK_LIST [[{"key":"ev","value":"[{\"meeting_id\":\"m\",\"timestamp\":NOW,)"
     R"(\"perf_content\":{\"k\":\"1\"}}]"}]])"},
    {"RoomBinaryMessageReceived", R"(["12345"])", "ROOM_BINARY_MESSAGE_RECEIVED [5]"},
    {"UserBinaryMessageReceived", R"(["u","123"])", R"(USER_BINARY_MESSAGE_RECEIVED ["u", 3])"},
    {"UserMessageReceived", R"(["u","m"])", ""},
    {"OnUserPublishStream", R"([{"roomId":"r","userId":"u","streamIndex":1},9,3])", ""},  // a screen
    {"OnUserPublishStream", R"([{"userId":"u"},9,3])", R"(USER_AUDIO_CHANGE ["u", 0] | USER_VIDEO_CHANGE ["u", 0])"},
    {"OnUserPublishStream", R"([{"userId":"u"},3,2])", R"(USER_VIDEO_CHANGE ["u", 0])"},
    {"OnUserUnpublishStream", R"([{"userId":"u"},1])", R"(USER_AUDIO_CHANGE ["u", 1])"},
    {"OnUserUnpublishStream", R"([{"userId":"u"},4])", ""},
    // Screen sharing.
    {"OnDesktopThumbnail", R"([[{"id":1,"val":null}]])", ""},  // nobody waits for them
    {"OnWindowThumbnail", "[[]]", ""},
    // Streams; the pictures themselves are in other tests.
    {"OnMultiStreamAdded", R"(["v","v_0",7,[@StreamResolution1@]])",
     R"(STREAM_ADDED ["v", "v_0", false, [@StreamResolution1@]])"},
    {"OnMultiStreamAdded", R"(["s","s_1",1,[]])", R"(STREAM_ADDED ["s", "s_1", true, []])"},
    {"OnServerVideoFrame", R"(["v"])", R"(FIRST_FRAME_RECEIVED ["v_0", 1] | FRAME_STATUS_CHANGE ["v_0", "v", 1, 2])",
     true},
    {"OnServerScreenFrame", R"([""])", R"(FIRST_FRAME_RECEIVED ["s_1", 0] | FRAME_STATUS_CHANGE ["s_1", "s", 0, 2])",
     true},
    {"OnServerScreenFrame", R"(["s"])", ""},
    {"OnMultiStreamRemoved", R"(["none","none_1",1])",
     R"(SHARE_MEMORY_UPDATE [1, []] | STREAM_REMOVED ["none", "none_1", true])"},
};

// A record with something in each of its documented members. Variants differ, and flags are the other way round.
std::string TextOf(const Record& record, int variant) {
  std::string text;
  std::int64_t number = variant;
  for (const auto& [name, type] : record.members) {
    const std::string value = type == "string"   ? Quoted(name + std::to_string(variant))
                              : type == "bool"   ? number % 2 == 0 ? "true" : "false"
                              : type == "double" ? std::to_string(number) + ".25"
                              : type == "int32"  ? std::to_string(-number)
                                                 : std::to_string(5'000'000'000 + number);
    text += (text.empty() ? "" : ",") + Quoted(name) + ':' + value;
    ++number;
  }
  return '{' + text + '}';
}

std::string Filled(std::string text) {
  for (const auto& record : DocumentedRecords()) {
    for (const int variant : {1, 2, 3}) {
      const std::string word = '@' + record.name + std::to_string(variant) + '@';
      if (text.find(word) != std::string::npos) text = Replaced(std::move(text), word, TextOf(record, variant));
    }
  }
  return text;
}

// All of both tables, with their records.
const std::vector<Report>& Reports() {
  static const auto* const reports = [] {
    auto* const all = new std::vector<Report>;
    std::map<std::string, std::string> keys;
    for (const auto& event : DocumentedEvents()) {
      for (const auto& source : event.sources) keys[source] = event.key;
    }
    for (const auto& [entries, content] : kAlike) {
      for (const auto& entry : Split(entries, " ")) {
        const std::string filled = Filled(content);
        all->push_back({entry, filled, keys[entry] + ' ' + filled});
      }
    }
    for (const Report& row : kSpecial) all->push_back({row.entry, Filled(row.content), Filled(row.events), row.isOnce});
    return all;
  }();
  return *reports;
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

// The kinds of a payload's elements, a letter each. There are blanks between them, and nowhere else.
std::string KindsOf(const std::string& payload) {
  std::string kinds;
  for (const auto& value : Split(payload.substr(1, payload.size() - 2), ", ")) {
    const char first = value[0];
    kinds += first == '"' ? 's' : first == '[' ? 'l' : first == '{' ? 'r' : first == 't' || first == 'f' ? 'b' : 'n';
  }
  return kinds;
}

TEST(Docs, NameThePayloadOfEveryEventAsItComes) {
  std::map<std::string, std::string> payloads;
  std::set<std::string> unheard;
  std::set<std::string> entries;
  for (const auto& event : DocumentedEvents()) {
    EXPECT_EQ(payloads.emplace(event.key, event.payload).first->second, event.payload) << event.key;
    unheard.insert(event.key);
  }
  for (const Report& report : Reports()) {
    entries.insert(report.entry);
    if (report.content.find("null") != std::string::npos) continue;  // leaves elements out
    for (const auto& event : Split(report.events, " | ")) {
      const std::string key = event.substr(0, event.find(' '));
      EXPECT_EQ(payloads[key], KindsOf(event.substr(key.size() + 1))) << event;
      unheard.erase(key);
    }
  }
  EXPECT_EQ(entries.size(), 75u);  // all but the one of pictures
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
    ASSERT_NO_FATAL_FAILURE(Begin());
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
    for (const Report& report : Reports()) {
      volleys += (volleys.empty() ? R"({"entry":)" : R"(,{"entry":)") + Quoted(report.entry) + R"(,"args":)" +
                 report.content + members + '}';
    }
    return volleys;
  }
};

TEST_F(EventTest, TheClientHearsOfEveryCallbackInItsOrder) {
  std::vector<std::string> expected;
  for (const Report& report : Reports()) {
    for (auto& event : Split(report.events, " | ")) expected.push_back(std::move(event));
  }
  EXPECT_THAT(Fire(Volleys("")), testing::ElementsAreArray(expected));
  EXPECT_TRUE(server_->WaitForLog("nobody waits for thumbnails", 2));
}

// Two users of one session, whose requests are many, while the engine reports all that it can from many threads.
TEST_F(EventTest, NothingIsLostOrTornWhereManyThreadsReportAndUsersAsk) {
  std::atomic<bool> done{false};
  const auto user = [&](std::vector<int>& answered) {
    for (int call = 0; call < 100 || !done; call += 10) {
      for (int i = 0; i < 9; ++i) {
        session_->CallAsync("GetSubscribeStatus", "[]",
                            [&answered, n = call + i](const auto& reply) { answered.push_back(reply.Ok() ? n : -1); });
      }
      if (!session_->Call("Connect", "[]", kBound).Ok()) break;
      answered.push_back(call + 9);
    }
  };
  std::vector<int> answered[2];
  std::thread users[2];
  for (int i = 0; i < 2; ++i) users[i] = std::thread(user, std::ref(answered[i]));
  std::map<std::string, int> heard;
  const auto events =
      Fire(Volleys(R"(,"threads":4,"times":5)") + R"(,{"entry":"OnUserJoin","threads":4,"times":5000,"args":["u",0]})");
  for (const auto& event : events) ++heard[event];
  done = true;
  for (auto& thread : users) thread.join();

  std::map<std::string, int> expected{{R"(USER_JOIN ["u", 0])", 20'000}};
  for (const Report& report : Reports()) {
    for (const auto& event : Split(report.events, " | ")) {
      if (!report.isOnce) expected[event] += 4 * 5;
    }
  }
  for (const auto& [event, count] : expected) EXPECT_EQ(heard[event], count) << event;
  for (const auto& numbers : answered) {
    ASSERT_GE(numbers.size(), 100u);
    for (std::size_t i = 0; i < numbers.size(); ++i) ASSERT_EQ(numbers[i], static_cast<int>(i));
  }
}

}  // namespace
}  // namespace integration
