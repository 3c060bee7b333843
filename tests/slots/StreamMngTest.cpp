#include "slots/StreamMng.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>

#include "common/JsonWriter.h"
#include "support/FakeClock.h"

namespace {

using namespace TESSARIN_LUMARC::slots;
using Events = std::vector<std::string>;

class StreamMngTest : public testing::Test, public IStreamEvents {
 protected:
  StreamMngTest() { streams.SetEvents(this); }

  void FirstFrameReceived(const std::string& sid, std::int32_t streamType) override {
    Add("first " + sid + ' ' + std::to_string(streamType));
  }
  void FrameStatusChange(const std::string& sid, const std::string& uid, std::int32_t streamType,
                         std::int32_t status) override {
    Add("status " + sid + ' ' + uid + ' ' + std::to_string(streamType) + ' ' + std::to_string(status));
  }
  void MyUidChange(const std::string& uid) override { Add("me " + uid); }

  void Add(std::string event) {
    const std::lock_guard lock(mutex);
    events.push_back(std::move(event));
    added.notify_all();
  }
  Events Take() {
    const std::lock_guard lock(mutex);
    return std::exchange(events, {});
  }

  support::FakeClock clock;
  StreamMng streams{clock};
  std::mutex mutex;
  std::condition_variable added;
  Events events;
};

TEST_F(StreamMngTest, ReportsFirstFramesSilenceAndReturnOnceEach) {
  streams.AddStream("ann", "s", false, {});
  clock.AdvanceMs(10'000);
  streams.handle_server_frame("ann", 1);
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"first s 1", "status s ann 1 2"}));

  clock.AdvanceMs(1499);
  streams.CheckFrameStatus();
  EXPECT_EQ(Take(), Events{});
  clock.AdvanceMs(1);
  streams.CheckFrameStatus();
  streams.CheckFrameStatus();
  EXPECT_EQ(Take(), (Events{"status s ann 1 2"}));  // the status from before

  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"status s ann 1 2"}));
}

TEST_F(StreamMngTest, ReportsAStreamWithoutFramesAtTheFirstCheck) {
  clock.AdvanceMs(10'000);
  streams.AddStream("ann", "s", true, {});
  streams.CheckFrameStatus();
  EXPECT_EQ(Take(), (Events{"status s ann 0 0"}));
}

TEST_F(StreamMngTest, TellsCameraAndScreenApartAndTakesAnEmptyUidForAll) {
  streams.AddStream("ann", "camera", false, {});
  streams.AddStream("ann", "screen", true, {});
  streams.AddStream("bob", "bobs", false, {});
  streams.handle_server_frame("ann", 0);
  EXPECT_EQ(Take(), (Events{"first screen 0", "status screen ann 0 2"}));
  streams.handle_server_frame("", 1);
  EXPECT_EQ(Take(), (Events{"first bobs 1", "status bobs bob 1 2", "first camera 1", "status camera ann 1 2"}));
}

TEST_F(StreamMngTest, StartsAStreamOverThatIsAddedAgain) {
  streams.AddStream("ann", "s", false, {});
  streams.handle_server_frame("ann", 1);
  streams.AddStream("ann", "s", false, {});
  Take();
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), (Events{"first s 1", "status s ann 1 2"}));
  streams.RemoveStream("s");
  streams.handle_server_frame("ann", 1);
  EXPECT_EQ(Take(), Events{});
}

TEST_F(StreamMngTest, FixesWhoseAStreamIsWhenItIsAdded) {
  streams.AddStream("me", "before", false, {});
  streams.SetMyUid("me");
  streams.AddStream("me", "after", false, {});
  EXPECT_EQ(Take(), (Events{"me me"}));
  EXPECT_FALSE(streams.IsSelfStream("before"));
  EXPECT_TRUE(streams.IsSelfStream("after"));
  EXPECT_FALSE(streams.IsSelfStream("unknown"));
}

TEST_F(StreamMngTest, AnswersTheQueriesInWireForm) {
  streams.AddStream("ann", "s", false, {{640, 360, 500, 15, 1, 2}});
  EXPECT_EQ(TESSARIN_COMMON::JsonText(streams.FetchAll()),
            R"([{"uid":"ann","sid":"s","streamType":1,"frameStatus":0,"isSelf":false,"resolutions":)"
            R"([{"width":640,"height":360,"maxKbps":500,"frameRate":15,"scaleMode":1,"codecMode":2}]}])");
  EXPECT_EQ(streams.FetchOne("ann", 1).sid, "s");
  EXPECT_EQ(TESSARIN_COMMON::JsonText(streams.FetchOne("ann", 0)),
            R"({"uid":"","sid":"","streamType":0,"frameStatus":0,"isSelf":false,"resolutions":[]})");
}

TEST_F(StreamMngTest, ChecksOnTheTimerBetweenStartAndStop) {
  TESSARIN_TASK::TimerTaskRunner runner(clock);
  runner.StartRunner({}, {});
  streams.AddStream("ann", "s", false, {});
  streams.StartFrameCheck(runner);
  streams.StartFrameCheck(runner);  // replaces the first
  clock.AdvanceMs(1500);
  {
    std::unique_lock lock(mutex);
    EXPECT_TRUE(added.wait_for(lock, std::chrono::seconds(10), [&] { return !events.empty(); }));
  }
  streams.StopFrameCheck(runner);
  Take();
  streams.AddStream("ann", "s", false, {});
  clock.AdvanceMs(1500);
  // A timer made now fires after all older ones that are due.
  std::condition_variable fired;
  bool done = false;
  runner.AddTimer(10, [&] {
    const std::lock_guard lock(mutex);
    done = true;
    fired.notify_all();
  });
  clock.AdvanceMs(10);
  std::unique_lock lock(mutex);
  EXPECT_TRUE(fired.wait_for(lock, std::chrono::seconds(10), [&] { return done; }));
  EXPECT_EQ(events, Events{});
  lock.unlock();
  runner.StopRunner();
}

}  // namespace
