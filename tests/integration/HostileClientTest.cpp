// Clients that break the protocol, stop in the middle, or do not read.
#include "RawLink.h"
#include "ServerTest.h"

namespace integration {
namespace {

using namespace std::string_literals;

class HostileClientTest : public ServerTest {
 protected:
  void SetUp() override {
    StartServer();
    ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1)) << server_->Host().Err();
  }
};

struct BadFrame {
  const char* name;
  std::string bytes;
};

class BadFrameTest : public HostileClientTest, public testing::WithParamInterface<BadFrame> {};

TEST_P(BadFrameTest, DoesNotOutliveItsClient) {
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(link.Receive());
  EXPECT_TRUE(link.Receive());
  EXPECT_TRUE(link.Send(GetParam().bytes));
  link.Close();
}

INSTANTIATE_TEST_SUITE_P(All, BadFrameTest,
                         testing::Values(BadFrame{"HalfALength", "\x10\x00"s},
                                         BadFrame{"HalfABody", RawLink::Framed("{\"content\":\"[]\"}").substr(0, 9)},
                                         BadFrame{"TheLargestLength", "\xff\xff\xff\xff{}"s}),
                         [](const auto& test) { return test.param.name; });

TEST_F(HostileClientTest, AnEmptyMessageEndsTheSession) {
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(link.Send(RawLink::Framed("")));
  EXPECT_TRUE(link.WaitClosed());
}

TEST_F(HostileClientTest, AClientThatIsKilledInTheMiddleOfAMessageEndsTheServer) {
  support::Process client(support::BesideTest("half_client"), {server_->Pipe()});
  ASSERT_TRUE(client.WaitForOut("sent")) << client.Err();
  client.Kill();
}

TEST_F(HostileClientTest, AClientThatGoesBeforeItHasReadAnythingEndsTheServer) {
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  link.Close();
}

// The bytes that the server took on for its client, by the lines of its log.
std::size_t BytesTakenOn(const ServerProcess& server) {
  const std::string mark = "SendDataToIpc bRet:true, length:";
  std::size_t sum = 0;
  for (const auto& line : server.LogLines(mark)) sum += std::stoul(line.substr(line.find(mark) + mark.size()));
  return sum;
}

TEST_F(HostileClientTest, AClientThatDoesNotReadIsServedWithinABound) {
  constexpr std::size_t kMegabyte = 1 << 20;
  constexpr std::size_t kKept = 64 * kMegabyte;  // by the transport
  constexpr int kEvents = 80;
  const std::string fire = R"({"sim.fire":[{"entry":"OnVemoraException","threads":4,"times":20,"args":[")" +
                           std::string(kMegabyte, 'x') + R"("]}]})";
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(link.Send(RawLink::Framed(
      RawLink::Request("update_server_option", R"({"rtcParams":)" + Quoted(fire) + "}", 1))));
  // The request is larger than the link holds at once: a look at what comes makes the rest of it go out.
  EXPECT_TRUE(link.Receive());
  EXPECT_TRUE(server_->WaitForLog("ON_VEMORA_EXCEPTION", kEvents));

  EXPECT_TRUE(link.Send(RawLink::Framed(RawLink::Request("set_fps", "[20]", 2))));
  EXPECT_TRUE(server_->WaitForCalls("SetFps", 1)) << "it does not serve any more";
  EXPECT_TRUE(server_->WaitForLog("SendDataToIpc bRet:false"));
  EXPECT_LT(BytesTakenOn(*server_), kKept + 4 * kMegabyte);
  link.Close();
}

}  // namespace
}  // namespace integration
