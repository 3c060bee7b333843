#include "task/TaskRunner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/Semaphore.h"
#include "support/WaitUntil.h"

using namespace TESSARIN_TASK;

namespace {

constexpr Location kHere{"Test::Here", "tests/Here"};

std::vector<int> NumbersBelow(int count) {
  std::vector<int> numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

class TaskRunnerTest : public testing::Test {
 protected:
  TaskRunnerTest() : runner_(TaskRunner::kMain, std::make_unique<ThreadLocalSlot>(), clock_) {}
  ~TaskRunnerTest() override { runner_.StopRunner(); }

  // Keeps the runner busy until the result is released.
  void Block(support::Semaphore& gate) {
    support::Semaphore entered;
    runner_.PostTask({}, [&] {
      entered.release();
      gate.acquire();
    });
    entered.acquire();
  }
  void Drain() {
    ASSERT_TRUE(runner_.PostTaskAndWait(kHere, [] {}));
  }

  support::FakeClock clock_;
  support::LogCapture log_;
  TaskRunner runner_;
};

TEST_F(TaskRunnerTest, RunsTasksOfManyThreadsOnceEachAndInTheirPostersOrder) {
  constexpr int kPosters = 4;
  constexpr int kEach = 500;
  std::vector<std::vector<int>> seen(kPosters);
  ASSERT_TRUE(runner_.StartRunner());
  std::vector<std::thread> posters;
  for (int p = 0; p < kPosters; ++p) {
    posters.emplace_back([&, p] {
      for (int i = 0; i < kEach; ++i) runner_.PostTask(kHere, [&seen, p, i] { seen[std::size_t(p)].push_back(i); });
    });
  }
  for (auto& poster : posters) poster.join();
  Drain();
  for (const auto& list : seen) EXPECT_EQ(list, NumbersBelow(kEach));
}

TEST_F(TaskRunnerTest, KeepsTheOrderOfABurstAndServesOnAfterIt) {
  constexpr int kBurst = 20000;  // more than a runner keeps memory for
  ASSERT_TRUE(runner_.StartRunner());
  std::vector<int> seen;
  for (const int count : {kBurst, 1, kBurst, 65}) {
    support::Semaphore gate;
    Block(gate);
    seen.clear();
    for (int i = 0; i < count; ++i) runner_.PostTask(kHere, [&seen, i] { seen.push_back(i); });
    gate.release();
    Drain();
    EXPECT_EQ(seen, NumbersBelow(count));
  }
}

TEST_F(TaskRunnerTest, BudgetsReportOnlyWhatIsStrictlyOverAndNoWaitOfAClockSetBack) {
  ASSERT_TRUE(runner_.StartRunner());
  const struct {
    std::int64_t waitMs, runMs;
    std::vector<std::string> lines;
  } cases[] = {{300, 200, {}},
               {301, 0, {"Test::Here@tests/Here waiting time: 301 ms."}},
               {0, 201, {"Test::Here@tests/Here running time: 201 ms."}},
               {-60'000, 0, {}}};
  for (const auto& c : cases) {
    const support::LogCapture log;
    support::Semaphore gate;
    Block(gate);
    runner_.PostTask(kHere, [&] { clock_.AdvanceMs(c.runMs); });
    clock_.StepWallMs(c.waitMs);
    gate.release();
    Drain();
    auto lines = log.Texts();
    std::erase_if(lines, [](const auto& line) { return !line.starts_with("Test::Here@tests/Here "); });
    EXPECT_EQ(lines, c.lines);
  }
}

// A blocking post that comes after the stop waits for the next start; so the test tries until one came before it.
TEST_F(TaskRunnerTest, StopDropsTheQueueAndReleasesTheCallerOfABlockingPost) {
  bool released = false;
  for (int attempt = 0; attempt < 100 && !released; ++attempt) {
    ASSERT_TRUE(runner_.StartRunner());
    support::Semaphore gate;
    Block(gate);
    bool ran = false;
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> queued = held;
    runner_.PostTask(kHere, [&ran, held = std::move(held)] { ran = true; });
    auto waiter = std::async(std::launch::async, [&] { return runner_.PostTaskAndWait(kHere, [] {}); });
    std::thread stopper([&] { runner_.StopRunner(); });
    EXPECT_TRUE(support::WaitUntil([&] { return queued.expired(); }));  // the stop drops it
    released = waiter.wait_for(std::chrono::milliseconds(100)) == std::future_status::ready;
    gate.release();
    stopper.join();
    EXPECT_FALSE(runner_.IsRunning());
    EXPECT_FALSE(ran);
    if (!released) {
      ASSERT_TRUE(runner_.StartRunner());
    }
    EXPECT_TRUE(waiter.get());
    runner_.StopRunner();
  }
  EXPECT_TRUE(released);
}

TEST_F(TaskRunnerTest, StartsOnceAndKnowsItsThread) {
  EXPECT_TRUE(runner_.StartRunner());
  EXPECT_FALSE(runner_.StartRunner());
  bool inside = false;
  ASSERT_TRUE(runner_.PostTaskAndWait(kHere, [&] { inside = runner_.IsCurrentThread(); }));
  EXPECT_TRUE(inside);
  EXPECT_FALSE(runner_.IsCurrentThread());
  EXPECT_TRUE(log_.Has("TaskRunner Running, type:main_thread, thread name: main_thread"));
}

}  // namespace
