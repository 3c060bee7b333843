#include "power/PowerTimer.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/FakeClock.h"
#include "support/Semaphore.h"

using TESSARIN_POWER::PowerTimer;

namespace {

constexpr std::int64_t kSecondUs = 1'000'000;

std::string StopError(PowerTimer& timer) {
  try {
    timer.StopThread();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

class PowerTimerTest : public testing::Test {
 protected:
  support::FakeClock clock_;
  PowerTimer timer_{std::chrono::milliseconds(1), clock_};
};

TEST_F(PowerTimerTest, RefusesWhatCannotFireAndCountsIdsFromZero) {
  EXPECT_EQ(timer_.AddTimer(kSecondUs, [] {}), -1);  // no thread
  timer_.StartThread({}, {});
  EXPECT_EQ(timer_.AddTimer(0, [] {}), -1);
  EXPECT_EQ(timer_.AddTimer(-5, [] {}), -1);
  EXPECT_EQ(timer_.AddTimer(kSecondUs, {}), -1);
  EXPECT_EQ(timer_.AddTimer(kSecondUs, [] {}), 0);
  EXPECT_EQ(timer_.AddTimer(kSecondUs, [] {}), 1);
}

TEST_F(PowerTimerTest, FiresOnceAnIntervalBetweenItsHooksUntilItIsCancelled) {
  std::vector<std::string> order;
  support::Semaphore fired;
  support::Semaphore other;
  timer_.StartThread([&] { order.push_back("start"); }, [&] { order.push_back("stop"); });
  const std::int32_t id = timer_.AddTimer(kSecondUs, [&] {
    order.push_back("fired");
    fired.release();
  });
  timer_.AddTimer(kSecondUs, [&] { other.release(); });
  for (int i = 0; i < 2; ++i) {
    clock_.AdvanceMs(5000);  // what was missed fires once
    fired.acquire();
    other.acquire();
  }
  timer_.CancelTimer(id);
  clock_.AdvanceMs(5000);
  other.acquire();
  timer_.StopThread();
  EXPECT_THAT(order, testing::ElementsAre("start", "fired", "fired", "stop"));
}

TEST_F(PowerTimerTest, StopsOnlyWhatRunsAndOnlyFromOutside) {
  EXPECT_EQ(StopError(timer_), "no timer thread running");
  timer_.StartThread({}, {});
  std::string error;
  support::Semaphore fired;
  timer_.AddTimer(kSecondUs, [&] {
    error = StopError(timer_);
    fired.release();
  });
  clock_.AdvanceMs(1000);
  fired.acquire();
  EXPECT_EQ(error, "Cannot be call stopThread in timer callback");
  timer_.StopThread();
  EXPECT_FALSE(timer_.HasThread());
  timer_.StartThread({}, {});  // and it starts anew, without the timers of before
  support::Semaphore again;
  timer_.AddTimer(kSecondUs, [&] { again.release(); });
  clock_.AdvanceMs(1000);
  again.acquire();
  EXPECT_FALSE(fired.try_acquire());
}

}  // namespace
