#include "slots/StreamMng.h"

#include <gtest/gtest.h>

#include "common/JsonWriter.h"
#include "support/FakeClock.h"

namespace {

using namespace TESSARIN_LUMARC::slots;
using Events = std::vector<std::string>;

class StreamMngTest : public testing::Test, public IStreamEvents {
 protected:
  StreamMngTest() { streams.SetEvents(this); }

  void FirstFrameReceived(const std::string& sid, std::int32_t streamType) override {
    events.push_back("first " + sid + ' ' + std::to_string(streamType));
  }
  void FrameStatusChange(const std::string& sid, const std::string& uid, std::int32_t streamType,
                         std::int32_t status) override {
    events.push_back("status " + sid + ' ' + uid + ' ' + std::to_string(streamType) + ' ' + std::to_string(status));
  }
  void MyUidChange(const std::string& uid) override { events.push_back("me " + uid); }
  Events Take() { return std::exchange(events, {}); }

  support::FakeClock clock;
  StreamMng streams{clock};
  Events events;
};

TEST_F(StreamMngTest, ReportsFirstFramesSilenceAndReturnOnceEachUntilTheStreamIsAddedAgain) {
  streams.AddStream("ann", "s", false, {});
  clock.AdvanceMs(10'000);
  streams.CheckFrameStatus();
  streams.handle_server_frame("ann", 1);
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"status s ann 1 0", "first s 1", "status s ann 1 2"}));

  clock.AdvanceMs(1499);
  streams.CheckFrameStatus();
  EXPECT_EQ(Take(), Events{});
  clock.AdvanceMs(1);
  streams.CheckFrameStatus();
  streams.CheckFrameStatus();
  EXPECT_EQ(Take(), (Events{"status s ann 1 2"}));  // the status from before

  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"status s ann 1 2"}));

  streams.AddStream("ann", "s", false, {});
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"first s 1", "status s ann 1 2"}));
  streams.RemoveStream("s");
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), Events{});
}

TEST_F(StreamMngTest, FixesWhoseAStreamIsWhenItIsAdded) {
  streams.AddStream("me", "before", false, {});
  streams.SetMyUid("me");
  streams.AddStream("me", "after", true, {{640, 360, 500, 15, 1, 2}});
  EXPECT_EQ(Take(), (Events{"me me"}));
  EXPECT_EQ(TESSARIN_COMMON::JsonText(streams.FetchAll()),
            R"([{"uid":"me","sid":"after","streamType":0,"frameStatus":0,"isSelf":true,"resolutions":)"
            R"([{"width":640,"height":360,"maxKbps":500,"frameRate":15,"scaleMode":1,"codecMode":2}]},)"
            R"({"uid":"me","sid":"before","streamType":1,"frameStatus":0,"isSelf":false,"resolutions":[]}])");
}

}  // namespace
