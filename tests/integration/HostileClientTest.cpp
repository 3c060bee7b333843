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

void PrintTo(const BadFrame& frame, std::ostream* out) {
  *out << frame.name;
}

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

TEST_F(HostileClientTest, AClientThatDoesNotReadIsServedWithinABound) {
  constexpr std::size_t kKept = 64 << 20;  // by the transport
  constexpr std::size_t kEventBytes = 64 << 10;
  constexpr std::size_t kEvents = kKept / kEventBytes + 256;
  const std::string fire = R"({"sim.fire":[{"entry":"OnVemoraException","threads":4,"times":)" +
                           std::to_string(kEvents / 4) + R"(,"args":[")" + std::string(kEventBytes, 'x') + R"("]}]})";
  RawLink link(server_->Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(
      link.Send(RawLink::Framed(RawLink::Request("update_server_option", R"({"rtcParams":)" + Quoted(fire) + "}", 1))));
  EXPECT_TRUE(server_->WaitForLog("pipe send refused, length:65"));

  EXPECT_TRUE(link.Send(RawLink::Framed(RawLink::Request("set_fps", "[20]", 2))));
  EXPECT_TRUE(server_->WaitForCalls("SetFps", 1)) << "it does not serve any more";
  std::size_t bytes = 0;
  const auto read = [&] {
    const auto body = link.Receive();
    bytes += body ? body->size() : 0;
    return body;
  };
  while (bytes < kKept / 2) ASSERT_TRUE(read());
  // Its reply finds room again and comes after everything that was kept.
  EXPECT_TRUE(link.Send(RawLink::Framed(RawLink::Request("set_fps", "[20]", 3))));
  for (bool last = false; !last;) {
    const auto body = read();
    ASSERT_TRUE(body);
    last = body->find(R"("taskId":3)") != std::string::npos;
  }
  link.Close();
}

}  // namespace
}  // namespace integration
