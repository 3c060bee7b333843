// Threads as the system sees them.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "support/Semaphore.h"
#include "task/Thread.h"

using namespace TESSARIN_TASK;

namespace {

struct Waiting : Runnable {
  void Run(Thread* /*thread*/) override {
    begun.release();
    end.acquire();
    ended.release();
  }

  support::Semaphore begun, end, ended;
};

TEST(NativeThread, APriorityIsTheThreadsOwn) {
  constexpr int kLeast = 19;  // to this one everybody may go
  const int mine = getpriority(PRIO_PROCESS, 0);
  Waiting body;
  Thread thread;
  thread.SetPriority(kLeast);  // nobody's
  ASSERT_TRUE(thread.Start(&body));
  thread.SetPriority(kLeast);
  EXPECT_EQ(getpriority(PRIO_PROCESS, thread.Id()), kLeast);
  EXPECT_EQ(getpriority(PRIO_PROCESS, 0), mine);
  body.end.release();
  thread.Join();
}

TEST(NativeThread, RunsOnWhenItIsGivenUp) {
  static auto* const body = new Waiting;  // it may outlive the test by some steps
  {
    Thread thread;
    ASSERT_TRUE(thread.Start(body));
    body->begun.acquire();
  }
  body->end.release();
  body->ended.acquire();
}

}  // namespace
