#include "task/Thread.h"

#include <gtest/gtest.h>

#include <thread>

using namespace TESSARIN_TASK;

namespace {

struct UntilStopped : Runnable {
  void Run(Thread* thread) override {
    while (!thread->StopRequested()) std::this_thread::yield();
    ++runs;
  }
  int runs = 0;
};

TEST(Thread, RefusesASecondStartAndANewNameUntilItIsStoppedAndStartsAnew) {
  UntilStopped body;
  Thread thread;
  for (int runs = 1; runs <= 2; ++runs) {
    EXPECT_TRUE(thread.SetName("worker"));
    ASSERT_TRUE(thread.Start(&body));
    EXPECT_TRUE(thread.IsRunning());
    EXPECT_NE(thread.Id(), 0u);
    EXPECT_FALSE(thread.Start(&body));
    EXPECT_FALSE(thread.SetName("other"));
    thread.StopAndJoin();
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_EQ(thread.Id(), 0u);
    EXPECT_EQ(body.runs, runs);
  }
}

}  // namespace
