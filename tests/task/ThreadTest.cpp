#include "task/Thread.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "support/Semaphore.h"

using namespace TESSARIN_TASK;

namespace {

class Body : public Runnable {
 public:
  explicit Body(std::function<void(Thread*)> work) : work_(std::move(work)) {}
  void Run(Thread* thread) override { work_(thread); }

 private:
  std::function<void(Thread*)> work_;
};

TEST(Thread, RefusesASecondStartAndANewNameWhileItRuns) {
  support::Semaphore end;
  Body body([&](Thread*) { end.acquire(); });
  Thread thread;
  EXPECT_TRUE(thread.SetName("worker"));
  ASSERT_TRUE(thread.Start(&body));
  EXPECT_TRUE(thread.IsRunning());
  EXPECT_NE(thread.Id(), 0u);
  EXPECT_FALSE(thread.Start(&body));
  EXPECT_FALSE(thread.SetName("other"));
  end.release();
  thread.StopAndJoin();
  EXPECT_FALSE(thread.IsRunning());
  EXPECT_EQ(thread.Id(), 0u);
}

TEST(Thread, BodySeesTheStopFlagAndAStartClearsIt) {
  int runs = 0;
  Body body([&](Thread* thread) {
    while (!thread->StopRequested()) std::this_thread::yield();
    ++runs;
  });
  Thread thread;
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(thread.Start(&body));
    thread.StopAndJoin();
  }
  EXPECT_EQ(runs, 2);
}

}  // namespace
