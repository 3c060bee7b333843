// Clients that break the protocol, stop in the middle, or do not read. One that sends what cannot be read has lost its
// way: the server says so in its log and is gone.
#include "RawLink.h"
#include "ServerTest.h"

namespace integration {
namespace {

using HostileClientTest = ServerTest;

TEST_F(HostileClientTest, AnEmptyMessageEndsTheSession) {
  ASSERT_NO_FATAL_FAILURE(StartServer());
  RawLink link(server_->Pipe());
  EXPECT_TRUE(link.Send(RawLink::Framed("")));
  EXPECT_TRUE(link.WaitClosed());
}

TEST_F(HostileClientTest, AClientThatGoesAtOnceOrInTheMiddleOfAMessageEndsTheServer) {
  for (const std::size_t bytes : {0, 6}) {
    ASSERT_NO_FATAL_FAILURE(StartServer());
    RawLink link(server_->Pipe());
    ASSERT_TRUE(link.Connected());
    link.Send(RawLink::Framed(RawLink::Request("connect", "[]", 1)).substr(0, bytes));
    link.Close();
    End();
  }
}

TEST_F(HostileClientTest, AClientThatDoesNotReadIsServedWithinABound) {
  constexpr std::size_t kKept = 64 << 20;  // by the transport
  constexpr std::size_t kEventBytes = 64 << 10;
  constexpr std::size_t kEvents = kKept / kEventBytes + 256;
  const std::string fire = R"({"sim.fire":[{"entry":"OnVemoraException","threads":4,"times":)" +
                           std::to_string(kEvents / 4) + R"(,"args":[")" + std::string(kEventBytes, 'x') + R"("]}]})";
  ASSERT_NO_FATAL_FAILURE(StartServer());
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(
      link.Send(RawLink::Framed(RawLink::Request("update_server_option", R"({"rtcParams":)" + Quoted(fire) + "}", 1))));
  EXPECT_TRUE(server_->WaitForLog("pipe send refused, length:65"));

  EXPECT_TRUE(link.Send(RawLink::Framed(RawLink::Request("set_fps", "[20]", 2))));
  EXPECT_TRUE(server_->WaitForCalls("SetFps", 1)) << "it does not serve any more";
  for (std::size_t bytes = 0; bytes < kKept / 2;) {
    const auto body = link.Receive();
    ASSERT_TRUE(body);
    bytes += body->size();
  }
  // Its reply finds room again and comes after everything that was kept.
  EXPECT_TRUE(link.Send(RawLink::Framed(RawLink::Request("set_fps", "[20]", 3))));
  auto body = link.Receive();
  while (body && body->find(R"("taskId":3)") == std::string::npos) body = link.Receive();
  EXPECT_TRUE(body);
}

TEST(FatalTest, ARequestThatCannotBeReadEndsTheServerWithALineInTheLogAndOnlyThoseBeforeItAreAnswered) {
  const struct {
    std::string body;
    const char* logLine;
  } cases[] = {
      {"no JSON", "[handleIpcData]: parse IPCData error exception:Parse json string fail. err=Invalid value."},
      {RawLink::Request("connect", "no JSON", 5), "handleIpcData recv msgType:Connect,taskId:5,content:no JSON"},
      {RawLink::Request("connect", "", 6), "handleIpcData recv msgType:Connect,taskId:6,content:"},
      {RawLink::Request("set_fps", "[1.5]", 7),
       "[handleIpcData]: 7 of SetFps cannot be handled, the process ends: data_.f.flags & kInt64Flag"},
      {RawLink::Request("set_sub_channels", R"([[{"channelName":5}]])", 9),
       "[handleIpcData]: 9 of SetSubChannels cannot be handled, the process ends: type unmatch[[0].channelName]"},
      {RawLink::Request("add_ignore_window", R"([{"windowHandle":5},1])", 10),
       "parse obj error: IsObject()[ignoreType],AddIgnoreWindow,10"},
      {RawLink::Request("set_video_output_mode", R"([[{"isScreen":"x"}]])", 11),
       "the process ends: wish bool, but not bool or int[[0].isScreen]"}};
  for (const auto& [body, logLine] : cases) {
    SCOPED_TRACE(body);
    ServerProcess server("", "");
    ASSERT_TRUE(server.WaitForCalls("SetRtcRuntimeParameter", 1)) << server.Host().Err();
    RawLink link(server.Pipe());
    ASSERT_TRUE(link.Connected());
    constexpr int kGood = 5;
    std::string burst;
    for (int i = 0; i < kGood; ++i) burst += RawLink::Framed(RawLink::Request("set_fps", "[20]", i));
    EXPECT_TRUE(link.Send(burst + RawLink::Framed(body)));

    for (int i = 0; i < kGood; ++i) {
      EXPECT_NE(link.ReceiveReply().value_or("closed").find("\"taskId\":" + std::to_string(i)), std::string::npos);
    }
    EXPECT_EQ(link.ReceiveReply().value_or("closed"), "closed");
    EXPECT_NE(server.Host().Wait().value_or(0), 0);
    EXPECT_FALSE(server.LogLines(logLine).empty());
  }
}

}  // namespace
}  // namespace integration
