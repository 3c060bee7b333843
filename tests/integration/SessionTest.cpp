// What passes between a server and a client that behaves, to the letter where the letter counts, and the server's own
// requests.
#include "RawLink.h"
#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Frame;
using ravo::client::FrameReader;
using testing::ElementsAre;
using testing::HasSubstr;

using SessionTest = ServerTest;

// The header's first three members, its last three and the content.
std::string Envelope(const char* module, const char* contentType, const char* messageType, const char* key,
                     const char* context, int taskId, const std::string& content) {
  return std::string(R"({"method_name":{"module_name":")") + module + R"(","content_type":")" + contentType +
         R"(","message_type":")" + messageType + R"(","message_key":")" + key + R"(","context_id":")" + context +
         R"(","taskId":)" + std::to_string(taskId) + R"(},"content":)" + Quoted(content) + "}";
}

TEST_F(SessionTest, BeginsWithConnectAndInitAndAnswersOnTheRequestsOwnEnvelope) {
  const std::pair<std::string, std::string> cases[] = {
      {RawLink::Request("get_share_memory_info", "[]", 7, R"("module_name":"m","content_type":"c","context_id":"x",)"),
       Envelope("m", "c", "CALL_RESPONSE", "GetShareMemoryInfo", "x", 7, "[]")},
      {RawLink::Request("no_such_method", "[]", 8, R"("module_name":"m","context_id":"x","other":1,)"),
       Envelope("m", "", "CALL_RESPONSE_ERROR", "NoSuchMethod", "x", 8, "handle not found nameNoSuchMethod")},
      // Nothing is lowered.
      {RawLink::Request("SET_FPS", "[]", -9),
       Envelope("", "", "CALL_RESPONSE_ERROR", "SETFPS", "", -9, "handle not found nameSETFPS")},
      {R"({"content":"[]"})", Envelope("", "", "CALL_RESPONSE_ERROR", "", "", 0, "handle not found name")},
      // Whatever the message says it is, its key decides.
      {R"({"method_name":{"message_type":"EVENT","message_key":"connect"},"content":"[]"})",
       Envelope("", "", "CALL_RESPONSE", "Connect", "", 0, "null")},
      // Of a request for thumbnails only its number lives on.
      {RawLink::Request("get_window_thumbnail", "[{}]", 7, R"("module_name":"m","context_id":"x",)"),
       Envelope("", "JSON", "CALL_RESPONSE", "", "", 7,
                R"([{"id":101,"val":"sim-thumbnail:101:0x0"},{"id":102,"val":"sim-thumbnail:102:0x0"}])")},
  };
  ASSERT_NO_FATAL_FAILURE(StartServer());
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_EQ(link.Receive(), Envelope("", "JSON", "EVENT", "connect", "", 0, R"(["vc"])"));
  auto init = link.Receive();
  if (init == Envelope("", "JSON", "EVENT", "RTC_SDK_INIT", "", 0, "[]")) init = link.Receive();  // may be quicker
  EXPECT_THAT(init.value_or("closed"),
              HasSubstr(R"("message_type":"EVENT","message_key":"INIT","context_id":"","taskId":0},)"
                        R"("content":"[{\"serverState\":{\"myUid\":\"\",)"));
  for (const auto& [request, reply] : cases) {
    EXPECT_TRUE(link.Send(RawLink::Framed(request)));
    EXPECT_EQ(link.ReceiveReply(), reply);
  }
}

TEST_F(SessionTest, LetsNobodyElseInWhileAClientIsThere) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  ravo::client::Session second(server_->Pipe());
  EXPECT_FALSE(second.Connect(std::chrono::seconds(0)));
  EXPECT_EQ(Call("Connect"), "null");
}

TEST_F(SessionTest, SetFpsReplacesTheFrameTick) {
  ASSERT_NO_FATAL_FAILURE(WatchAnn(""));
  ReadFrame("ann_0");
  // No timer takes the interval that 2000 gives: the tick has gone, and with it the leave to write another frame.
  EXPECT_EQ(Call("SetFps", "[2000]"), "null");
  Frame last;
  while (tracker_->Read("ann_0", last, std::chrono::seconds(1)) == FrameReader::Outcome::Frame) {
  }
  EXPECT_EQ(Call("SetFps", "[-1]"), "null");
  EXPECT_EQ(Call("SetFps", "[100]"), "null");
  EXPECT_GT(ReadFrame("ann_0").counter, last.counter);
  ReadFrame("ann_0");
  EXPECT_THAT(server_->Calls("SetFps"), ElementsAre("2000", "-1", "100"));
}

// What the server tells of itself without being asked: its start, a request that held up the others, each join, and its
// load from the second look on.
TEST_F(SessionTest, ReportsItsStartASlowRequestItsJoinsAndItsLoad) {
  const auto report = [this](const std::string& words) {
    std::string content;  // of reports in between there may be some, where a slow machine has held a request up
    do content = Expect("MERI_TRACK_LIST");
    while (content.find(words) == std::string::npos && !HasFailure());
    return content;
  };
  ASSERT_NO_FATAL_FAILURE(Begin(R"("sim.delay":{"SetFps":350})"));
  report(R"([{\"sdk_module_name\":\"ravo_init_total_time_ms_v2\",\"sdk_module_cost\":)");
  Call("SetFps", "[30]");
  const std::string head =
      R"([[{"key":"vc_meeting_pcsdk_server_cost_time","value":"[{\"function_name\":\"SetFps\",\"cost\":)";
  const std::string slow = report(head);
  EXPECT_GE(std::stoi(slow.substr(std::min(head.size(), slow.size()))), 350) << slow;
  for (int meeting = 0; meeting < 2; ++meeting) {
    Call("JoinMeeting", R"(["token","room","me",""])");
    report(R"([{\"sdk_join_meeting_cost\":)");
    Call("LeaveMeeting");
  }
  EXPECT_THAT(report("vc_pc_meeting_perf_monitor"), HasSubstr(R"(\"pname\":\"ravo_native\")"));
}

}  // namespace
}  // namespace integration
