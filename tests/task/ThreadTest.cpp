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

TEST(Thread, KnowsItselfThroughItsSlotAlone) {
  ThreadLocalSlot slot;
  Thread with(&slot);
  Thread without;
  bool inWith = false;
  bool inWithout = true;
  Body asksWith([&](Thread* thread) { inWith = thread->IsCurrent() && thread->Current() == &with; });
  Body asksWithout([&](Thread* thread) { inWithout = thread->IsCurrent(); });
  ASSERT_TRUE(with.Start(&asksWith) && without.Start(&asksWithout));
  with.Join();
  without.Join();
  EXPECT_TRUE(inWith);
  EXPECT_FALSE(inWithout);
  EXPECT_FALSE(with.IsCurrent());
}

TEST(Thread, WithoutAThreadJoinAndPriorityDoNothing) {
  Thread thread;
  thread.SetPriority(1);
  thread.Join();
  ASSERT_TRUE(thread.Start(nullptr));
  thread.Join();
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
