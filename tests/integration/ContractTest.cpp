// Every method over the real link: what it answers, and what it asks of the engine.
#include <algorithm>
#include <map>
#include <mutex>
#include <set>

#include "Contract.h"
#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Reply;

constexpr std::int64_t kFailure = -8589934591;  // needs more than 32 bits

struct Exchange {
  std::string method;
  std::string arguments;
  std::string reply;  // "never"; a * stands for anything
  std::string calls;  // "Entry arguments | Entry arguments", as the journal has the arguments
};

const std::string kInitCalls =
    R"(GetDevices 0,"memory" | GetCurrentDeviceId 0,"memory" | FreeDeviceInfoList "memory",1 | GetDevices 1,"memory" )"
    R"(| GetCurrentDeviceId 1,"memory" | FreeDeviceInfoList null,0 | GetDevices 2,"memory" )"
    R"(| GetCurrentDeviceId 2,"memory" | FreeDeviceInfoList null,0)";

// Methods that need a word of their own, while every entry that has a result answers 0. Those that stand in neither
// list just hand their arguments over.
const std::vector<Exchange> kCases = {
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
    {"MonitorAddProcess", R"([{"pid":6,"pname":"one"},{"pid":7,"pname":"two","no_report":true}])", "null", ""},
    {"MonitorAddProcess", R"([[{"pid":8,"pname":"three"}]])", "null", ""},
    {"UpdateServerOption",
     R"({"rtcParams":"{\"p\":1}","enableNV12":true,"subscribeMaxNumber":3,"isRelease":true,)"
     R"("screenProfile":{"width":800,"height":600},"enableCvPixelBufferNV12":1,)"
     R"("proxyConfigs":[{"proxyType":2,"proxyIp":"host","proxyPort":80}]})",
     "null",
     R"(ServerOptionSetEnableNv12 false | ServerOptionSetEnableCvPixelBuffer false )"
     R"(| ServerOptionSetProxyConfig [{"proxyType":2,"proxyIp":"host","proxyPort":80,"unused1":"","unused2":""}] )"
     R"(| ServerOptionSetScreenProfile {"width":800,"height":600,"maxKbps":0,"frameRate":0,"scaleMode":0,"codecMode":0} )"
     R"(| ServerOptionSetRTCParams "{\"p\":1}")"},
    {"UpdateServerOption",
     R"({"vendorTypeConfig":{"isMediaOversea":true},"activeSpeakerConfig":{"rankBase":2},"videoProfiles":[{"width":1}]})",
     "null", "ServerOptionSetActiveSpeakerConfig * | ServerOptionSetVideoProfiles *"},
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
    {"SetSubChannels", "[]", "0", "SetSubChannels []"},
    {"SetVideoOutputMode", R"([{"userId":"u","isScreen":1,"streamId":"s","enableShareMemory":true}])", "null", ""},
    {"SetVideoOutputMode", R"(["x"])", "null", ""},
    {"SetPlaybackDigitalMute", "[false]", "0", "SetPlaybackVolume 100"},
    {"GetDevicePerformanceInfos", "[]",
     R"({"memory":8192.0,"cpuCores":4,"cpuThreads":8,"cpuFrequency":2400.0,"cpuModel":"Simulated CPU",)"
     R"("gpuModel":"Simulated GPU","os":"Simulated OS","osVersion":"1.0","deviceModel":"Simulated Device"})",
     R"(GetDevicePerformanceInfos "memory")"},
    {"StartPowerMonitor", "[30]", "null", ""},
    // Screen sharing.
    {"AddIgnoreWindow",
     R"({"ignoreType":3,"windowHandle":{"type_field":"t","data":[1,-2]},"ignoreTypeByPid":4,"windowPid":5,)"
     R"("windowTitles":["a","b"],"windowLevel":6,"windowHandleIntValue":5000000000})",
     "null",
     R"(AddIgnoreWindow {"ignoreType":3,"handleType":"t","handleData":[1,-2],"ignoreTypeByPid":4,"windowPid":5,)"
     R"("windowTitles":["a","b"],"windowLevel":6,"windowHandleIntValue":5000000000},0)"},
    {"RemoveIgnoreWindow", R"([{"windowPid":5,"windowTitles":["a"]},9])", "null",
     R"(RemoveIgnoreWindow {"ignoreType":1,"handleType":"","handleData":[],*"windowPid":5,"windowTitles":["a"],*},9)"},
    {"AddIncludeWindow", "[]", "null", R"(AddIncludeWindow {"ignoreType":1,*,"windowHandleIntValue":0},0)"},
    {"RemoveIncludeWindow", "7", "null", R"(RemoveIncludeWindow {"ignoreType":1,*,"windowHandleIntValue":0},7)"},
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
     R"([{"deviceName":"Mic","deviceId":"mic","containerId":"",*"isBuiltin":true,*"canAutoFraming":false}])",
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
    {"GetShareMemoryInfo", "[]", "[]", ""},
    {"ClearShareMemory", "[]", "null", ""},
    {"ClearShareMemory", R"([{"sid":5}])", "null", ""},
    {"ClearShareMemory", R"([{"sid":"s","path":"gone","bufferSize":8}])", "null", ""},
};

// While every entry that has a result answers -8589934591: as 32 bits 1, as a boolean true.
const std::vector<Exchange> kCasesOfFailure = {
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
    {"StartPlayAudio", "[]", "0", R"(StartAudioMixing "",{"reserved1":0,"reserved2":0,"value":0,"reserved3":0})"},
    {"StopPlayAudio", "[]", "0", "StopAudioMixing "},
    // A stop that fails in its second part.
    {"UpdateServerOption", R"({"rtcParams":"{\"sim.results\":{\"StopScreenCapture\":0,\"SCUnpublishScreen\":4}}"})",
     "null", R"(ServerOptionSetRTCParams "{\"sim.results\":{\"StopScreenCapture\":0,\"SCUnpublishScreen\":4}}")"},
    {"StopShareScreen", "[3]", "-8589934591", "StopScreenCapture 3 | StopScreenAudioCapture 3"},
    {"ScStopShareAudio", "[]", "4", "StopScreenAudioCapture 0 | SCUnpublishScreen 1,0"},
};

// Whether the text is the pattern, in which each * stands for anything.
bool Matches(const std::string& text, const std::string& pattern) {
  const auto parts = Split(pattern, "*");
  std::size_t at = 0;
  for (const auto& part : parts) {
    at = text.find(part, at);
    if (at == std::string::npos) return false;
    at += part.size();
  }
  return text.starts_with(Split(pattern + "*", "*")[0]) && (at == text.size() || pattern.ends_with('*'));
}

std::string ReplyOf(const std::string& kind, std::int64_t result) {
  if (kind == "number") return std::to_string(result);
  if (kind == "int") return std::to_string(static_cast<std::int32_t>(result));
  if (kind == "bool") return result != 0 ? "true" : "false";
  return kind.starts_with('=') ? kind.substr(1) : kind;
}

bool IsOfKind(const std::string& reply, const std::string& kind) {
  if (kind.starts_with('=')) return reply == kind.substr(1);
  if (kind == "null" || kind == "never") return reply == kind;
  if (kind == "number" || kind == "int") return reply[0] == '-' || (reply[0] >= '0' && reply[0] <= '9');
  if (kind == "bool") return reply == "true" || reply == "false";
  if (kind == "string") return reply[0] == '"';
  return reply[0] == (kind[0] == '[' ? '[' : '{') || reply == "null";
}

// The nth argument of its type in a call.
std::string Typical(char type, std::ptrdiff_t nth) {
  if (type == 's') return "\"t\u00e9xt " + std::to_string(nth) + '"';
  if (type == 'i') return std::to_string((nth % 2 == 0 ? 5000000000 : -5000000000) + nth);
  return nth == 0 ? "true" : "false";
}

// What the engine gets for an argument that is missing or of another type, and one of another type.
const std::map<char, std::string> kNothing = {{'s', R"("")"}, {'i', "0"}, {'b', "false"}};
const std::map<char, std::string> kWrong = {{'s', "5"}, {'i', R"("5")"}, {'b', "1"}};

template <class TextOf>
std::string ListOf(const std::string& types, TextOf textOf) {
  std::string list;
  for (std::size_t i = 0; i < types.size(); ++i) list += (i == 0 ? "" : ",") + textOf(types[i], i);
  return list;
}

// The calls of a method that hands its arguments over: all of them, none, the first alone, all of the wrong type, and
// for each type a lone value.
std::vector<Exchange> PlainExchanges(const Method& method, std::int64_t result) {
  const std::string& types = method.arguments;
  const std::string reply = ReplyOf(method.reply, result);
  std::vector<Exchange> exchanges;
  const auto add = [&](const std::string& arguments, const std::string& handed) {
    exchanges.push_back(
        {method.name, arguments, reply, method.entries.empty() ? "" : method.entries[0] + ' ' + handed});
  };
  if (types.empty() || types == "x") {
    add("[]", "");
    add("[1.5,{}]", "");
    return exchanges;
  }
  const auto typical = [&](char type, std::size_t i) {
    return Typical(type, std::count(types.begin(), types.begin() + static_cast<std::ptrdiff_t>(i), type));
  };
  const auto nothing = [](char type, std::size_t) { return kNothing.at(type); };
  const auto wrong = [](char type, std::size_t) { return kWrong.at(type); };
  add('[' + ListOf(types, typical) + ']', ListOf(types, typical));
  add("[]", ListOf(types, nothing));
  add('[' + typical(types[0], 0) + ']',
      ListOf(types, [&](char type, std::size_t i) { return i == 0 ? typical(type, 0) : kNothing.at(type); }));
  add('[' + ListOf(types, wrong) + ']', ListOf(types, nothing));
  for (const char lone : std::set(types.begin(), types.end())) {
    const std::string value = Typical(lone, 0);
    add(value, ListOf(types, [&](char type, std::size_t) { return type == lone ? value : kNothing.at(type); }));
  }
  return exchanges;
}

class ContractTest : public ServerTest {
 protected:
  // From here on every entry that has a result answers so and does nothing else.
  void SetResults(std::int64_t result) {
    std::string members;
    for (const auto& method : methods_) {
      for (const auto& entry : method.entries) {
        members += (members.empty() ? "" : ",") + Quoted(entry) + ':' + std::to_string(result);
      }
    }
    SetParams(R"("sim.results":{)" + members + '}');
  }

  // Sends all at once; what is never answered shows in the answers that come behind it.
  void Check(const std::vector<Exchange>& exchanges) {
    struct Answers {
      std::mutex mutex;  // guards list
      std::vector<std::pair<std::size_t, Reply>> list;
    };
    ASSERT_EQ(Call("Connect"), "null");  // behind what the server does of itself
    const std::size_t before = server_->Journal().size();
    const auto answers = std::make_shared<Answers>();
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      session_->CallAsync(exchanges[i].method, exchanges[i].arguments, [answers, i](const Reply& reply) {
        const std::lock_guard lock(answers->mutex);
        answers->list.emplace_back(i, reply);
      });
    }
    const auto answered = std::ranges::count_if(exchanges, [](const auto& row) { return row.reply != "never"; });
    ASSERT_EQ(Call("Connect"), "null");
    const auto list = [&] {
      const std::lock_guard lock(answers->mutex);
      return answers->list;
    };
    EXPECT_TRUE(WaitUntil([&] { return std::ssize(list()) >= answered; }));
    CheckReplies(exchanges, list());
    CheckCalls(exchanges, server_->Journal(), before);
  }

  const std::vector<Method> methods_ = DocumentedMethods();

 private:
  void CheckReplies(const std::vector<Exchange>& exchanges, const std::vector<std::pair<std::size_t, Reply>>& replies) {
    std::vector<std::string> got(exchanges.size(), "never");
    std::size_t last = 0;
    for (const auto& [call, reply] : replies) {
      const Exchange& exchange = exchanges[call];
      got[call] = reply.content;
      const auto& kind = std::ranges::find(methods_, exchange.method, &Method::name)->reply;
      EXPECT_TRUE(!reply.Ok() || IsOfKind(reply.content, kind)) << exchange.method << ' ' << reply.content;
      const bool later = exchange.method.ends_with("Thumbnail");
      EXPECT_EQ(reply.key, later                                          ? ""
                           : exchange.method == "setVideoCaptureRotation" ? "SetVideoCaptureRotation"
                                                                          : exchange.method);
      if (later) continue;
      EXPECT_GE(call, last) << exchange.method << " is answered too late";
      last = call;
    }
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      EXPECT_TRUE(Matches(got[i], exchanges[i].reply))
          << exchanges[i].method << ' ' << exchanges[i].arguments << "\nanswered " << got[i] << "\nnot      "
          << exchanges[i].reply;
    }
  }

  void CheckCalls(const std::vector<Exchange>& exchanges, const std::vector<std::string>& journal, std::size_t at) {
    for (const auto& exchange : exchanges) {
      const auto& promised = std::ranges::find(methods_, exchange.method, &Method::name)->entries;
      for (const auto& call : Split(exchange.calls, " | ")) {
        const std::string entry = call.substr(0, call.find(' '));
        EXPECT_TRUE(promised.empty() || std::ranges::count(promised, entry) > 0) << exchange.method << ' ' << entry;
        const std::string line = R"({"entry":")" + entry + R"(","args":[)" + call.substr(entry.size() + 1) + "]}";
        ASSERT_LT(at, journal.size()) << exchange.method;
        ASSERT_TRUE(Matches(journal[at], line))
            << exchange.method << ' ' << exchange.arguments << "\ncalled " << journal[at] << "\nnot    " << line;
        ++at;
      }
    }
    EXPECT_EQ(at, journal.size()) << "more was called: " << journal[at];
  }
};

constexpr char kScene[] =
    R"("sim.devices":[{"type":0,"id":"mic","name":"Mic","isBuiltin":true}],"sim.screens":{)"
    R"("desktops":[{"id":5,"primary":1,"x":-10,"y":20,"width":640,"height":480}],"windows":[{"id":6,"pid":60,)"
    R"("application":"App","title":"Title","x":1,"y":2,"width":3,"height":4}]})";

TEST_F(ContractTest, EveryMethodAnswersAndCallsTheEngineAsPromised) {
  ASSERT_NO_FATAL_FAILURE(Begin(kScene, R"("appVersion":"1.2","vendorTypeConfig":{"isMediaOversea":true})"));
  std::set<std::string> special{"DestroyServer"};  // below
  for (const auto& row : kCases) special.insert(row.method);
  for (const auto& row : kCasesOfFailure) special.insert(row.method);
  const auto plain = [&](std::int64_t result) {
    std::vector<Exchange> exchanges;
    for (const auto& method : methods_) {
      if (special.contains(method.name)) continue;
      for (auto& exchange : PlainExchanges(method, result)) exchanges.push_back(std::move(exchange));
    }
    return exchanges;
  };
  SetResults(0);
  ASSERT_NO_FATAL_FAILURE(Check(kCases));
  for (const char* process : {"pid:7, pname:two", "pid:8, pname:three"}) {
    EXPECT_TRUE(server_->WaitForLog(std::string("[AddMonitorInfo] ") + process));
  }
  ASSERT_NO_FATAL_FAILURE(Check(plain(0)));
  SetResults(kFailure);
  ASSERT_NO_FATAL_FAILURE(Check(kCasesOfFailure));
  SetResults(kFailure);
  ASSERT_NO_FATAL_FAILURE(Check(plain(kFailure)));
}

// It reaches the engine, and ends neither the session nor the process.
TEST_F(ContractTest, DestroyServerIsARequestLikeOthers) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  EXPECT_EQ(Call("DestroyServer"), "null");
  EXPECT_EQ(Call("Connect"), "null");
  EXPECT_EQ(server_->Calls("DestroyServer").size(), 1u);
  Leave();
  server_.reset();  // the engine takes offence at its second end
}

}  // namespace
}  // namespace integration
