// The server's own requests.
#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Frame;
using ravo::client::FrameReader;
using testing::ElementsAre;
using testing::SizeIs;

class RequestTest : public ServerTest {};

TEST_F(RequestTest, MonitorAddProcessTakesTheListAsContentAndAsArgument) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_EQ(Call("MonitorAddProcess", R"([{"pid":11,"pname":"one"},{"pid":12,"pname":"two","no_report":true}])"),
            "null");
  EXPECT_EQ(Call("MonitorAddProcess", R"([[{"pid":13,"pname":"three"}]])"), "null");
  EXPECT_TRUE(server_->WaitForLog("[AddMonitorInfo] pid:12, pname:two"));
  EXPECT_TRUE(server_->WaitForLog("[AddMonitorInfo] pid:13, pname:three"));
  EXPECT_THAT(server_->LogLines("RavoManager::MonitorAddProcess size:2"), SizeIs(1));
}

TEST_F(RequestTest, SetFpsReplacesTheFrameTick) {
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(R"({"userId":"ann"})"));
  Expect("STREAM_ADDED");
  Subscribe("ann_0");
  ReadFrame("ann_0");
  // No timer takes the interval that 2000 gives: the tick has gone, and with it the leave to write another frame.
  EXPECT_EQ(Call("SetFps", "[2000]"), "null");
  Frame last;
  while (tracker_->Read("ann_0", last, std::chrono::seconds(1)) == FrameReader::Outcome::Frame) {
  }
  EXPECT_EQ(Call("SetFps", "[-1]"), "null");
  EXPECT_EQ(Call("SetFps", "[100]"), "null");
  EXPECT_EQ(ReadFrame("ann_0").counter, last.counter + 1);
  ReadFrame("ann_0");
  EXPECT_THAT(server_->Calls("SetFps"), ElementsAre("2000", "-1", "100"));
}

TEST_F(RequestTest, ReportsARequestThatHeldUpTheOthers) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  const auto reports = [this] {
    int count = 0;
    Call("Connect");
    while (const auto event = session_->WaitEvent("MERI_TRACK_LIST", std::chrono::milliseconds(0))) {
      if (event->content.find("function_name") == std::string::npos) continue;
      EXPECT_THAT(event->content, testing::StartsWith(R"([[{"key":"vc_meeting_pcsdk_server_cost_time","value":)"
                                                      R"("[{\"function_name\":\"SetFps\",\"cost\":3)"));
      ++count;
    }
    return count;
  };
  SetParams(R"("sim.delay":{"SetFps":350})");
  Call("SetFps", "[30]");
  EXPECT_EQ(reports(), 1);
  SetParams(R"("sim.delay":{"SetFps":150})");
  Call("SetFps", "[30]");
  EXPECT_EQ(reports(), 0);
}

// What the server tells of itself without being asked: its start, each join, and its load from the second look on.
TEST_F(RequestTest, ReportsItsStartItsJoinsAndItsLoad) {
  const auto report = [this](const std::string& words) {
    std::string content;  // of reports in between there may be some, where a slow machine has held a request up
    do content = Expect("MERI_TRACK_LIST");
    while (content.find(words) == std::string::npos && !HasFailure());
    return content;
  };
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  report(R"([{\"sdk_module_name\":\"ravo_init_total_time_ms_v2\",\"sdk_module_cost\":)");
  for (int meeting = 0; meeting < 2; ++meeting) {
    Call("JoinMeeting", R"(["token","room","me",""])");
    report(R"([{\"sdk_join_meeting_cost\":)");
    Call("LeaveMeeting");
  }
  EXPECT_THAT(report("vc_pc_meeting_perf_monitor"), testing::HasSubstr(R"(\"pname\":\"ravo_native\")"));
}

}  // namespace
}  // namespace integration
