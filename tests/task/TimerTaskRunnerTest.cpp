#include "task/TimerTaskRunner.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/Semaphore.h"

using namespace TESSARIN_TASK;

namespace {

class TimerTaskRunnerTest : public testing::Test {
 protected:
  TimerTaskRunnerTest() : runner_(clock_) { EXPECT_TRUE(runner_.StartRunner({}, {})); }
  ~TimerTaskRunnerTest() override { runner_.StopRunner(); }

  support::FakeClock clock_;
  TimerTaskRunner runner_;
};

TEST_F(TimerTaskRunnerTest, AMissedTimerFiresOnceAndAllInOrderOfCreation) {
  std::vector<int> order;
  support::Semaphore last;
  runner_.AddTimer(3000, [&] { order.push_back(3000); });
  runner_.AddTimer(1000, [&] { order.push_back(1000); });
  runner_.AddTimer(9000, [&] { last.release(); });
  clock_.AdvanceMs(9000);
  last.acquire();
  EXPECT_EQ(order, (std::vector<int>{3000, 1000}));
}

TEST_F(TimerTaskRunnerTest, CancelFromOtherThreadWaitsForRunningClosureWhichIsTheLast) {
  support::Semaphore entered;
  support::Semaphore cancelled;
  support::Semaphore passed;
  int runs = 0;
  bool wasCancelledMeanwhile = false;
  const std::int32_t id = runner_.AddTimer(1000, [&] {
    ++runs;
    entered.release();
    wasCancelledMeanwhile = cancelled.try_acquire(std::chrono::milliseconds(200));
  });
  clock_.AdvanceMs(1000);
  entered.acquire();
  runner_.CancelTimer(id);
  cancelled.release();
  runner_.AddTimer(1000, [&] { passed.release(); });
  clock_.AdvanceMs(1000);
  passed.acquire();
  EXPECT_FALSE(wasCancelledMeanwhile);
  EXPECT_EQ(runs, 1);
}

TEST_F(TimerTaskRunnerTest, ClosureMayAddAndCancelWhileAnotherThreadCancels) {
  support::Semaphore entered;
  support::Semaphore gate;
  support::Semaphore nested;
  std::int32_t self = 0;
  int runs = 0;
  self = runner_.AddTimer(1000, [&] {
    ++runs;
    entered.release();
    gate.acquire();
    runner_.CancelTimer(self);
    runner_.AddTimer(1000, [&] { nested.release(); });
  });
  const std::int32_t other = runner_.AddTimer(1000000, [] {});
  clock_.AdvanceMs(1000);
  entered.acquire();
  std::thread canceller([&] { runner_.CancelTimer(other); });
  gate.release();
  canceller.join();
  clock_.AdvanceMs(1000);
  nested.acquire();
  EXPECT_EQ(runs, 1);
}

TEST(TimerTaskRunner, HooksRunOnTheTimerThreadAndIdsCountFromOneAndRunOut) {
  TimerTaskRunner runner;
  bool started = false;
  bool stopped = false;
  ASSERT_TRUE(
      runner.StartRunner([&] { started = runner.IsCurrentThread(); }, [&] { stopped = runner.IsCurrentThread(); }));
  EXPECT_FALSE(runner.StartRunner({}, {}));
  const support::LogCapture log;
  EXPECT_EQ(runner.AddTimer(0, [] {}), -1);
  EXPECT_EQ(runner.AddTimer(5, {}), -1);
  for (int id = 1; id <= 999999; ++id) {
    ASSERT_EQ(runner.AddTimer(1000000, [] {}), id);
    runner.CancelTimer(id);
  }
  for (int i = 0; i < 2; ++i) EXPECT_EQ(runner.AddTimer(1000, [] {}), -1);
  EXPECT_EQ(log.Count("timer id large than 999999."), 2);
  runner.StopRunner();
  EXPECT_TRUE(started && stopped);
}

}  // namespace
