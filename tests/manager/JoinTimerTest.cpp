#include "manager/JoinTimer.h"

#include <gtest/gtest.h>

#include "support/FakeClock.h"
#include "support/Semaphore.h"

using TESSARIN_LUMARC::JoinTimer;

namespace {

class JoinTimerTest : public testing::Test {
 protected:
  JoinTimerTest() : timers_(clock_) { EXPECT_TRUE(timers_.StartRunner({}, {})); }
  ~JoinTimerTest() override { timers_.StopRunner(); }

  // Moves the time on and looks how often the join was reported, once a later timer has had its turn.
  int ReportsAfterMs(std::int64_t ms) {
    support::Semaphore passed;
    const std::int32_t id = timers_.AddTimer(1, [&] { passed.release(); });
    clock_.AdvanceMs(ms);
    passed.acquire();
    timers_.CancelTimer(id);  // waits for the rest of the pass
    return reports_;
  }

  support::FakeClock clock_;
  TESSARIN_TASK::TimerTaskRunner timers_;
  std::atomic<int> reports_{0};
  JoinTimer joinTimer_{timers_, [this] { ++reports_; }, clock_};
};

TEST_F(JoinTimerTest, ReportsAJoinWithoutAnAnswerEvery50SecondsUntilItIsStopped) {
  joinTimer_.Start();
  EXPECT_EQ(ReportsAfterMs(49'999), 0);
  EXPECT_EQ(ReportsAfterMs(1), 1);
  EXPECT_EQ(ReportsAfterMs(49'999), 1);
  EXPECT_EQ(ReportsAfterMs(1), 2);
  EXPECT_EQ(joinTimer_.ElapsedMs(), 100'000);
  joinTimer_.Stop();
  EXPECT_EQ(ReportsAfterMs(100'000), 2);
}

TEST_F(JoinTimerTest, ASecondJoinLeavesTheFirstOneReporting) {
  joinTimer_.Start();
  joinTimer_.Start();
  joinTimer_.Stop();
  EXPECT_EQ(ReportsAfterMs(50'000), 1);
}

}  // namespace
