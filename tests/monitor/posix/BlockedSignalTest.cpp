#include <gtest/gtest.h>
#include <ravo/ravo.h>

#include <csignal>
#include <thread>

#include "common/Platform.h"
#include "support/Semaphore.h"

namespace {

std::int32_t FramesOf(std::uint32_t thread) {
  FfiList list = getThreadStack(thread, 100, nullptr, 0);
  releaseStringArrayFFI(&list);
  return list.count;
}

TEST(BlockedSignal, ReportsAThreadThatBlocksSignalsWithoutAStack) {
  ASSERT_TRUE(symInitializeCurrentProcess());
  support::Semaphore blocked;
  support::Semaphore unblock;
  support::Semaphore end;
  std::uint32_t id = 0;
  std::thread deaf([&] {
    id = TESSARIN_COMMON::CurrentThreadId();
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    blocked.release();
    unblock.acquire();
    pthread_sigmask(SIG_UNBLOCK, &all, nullptr);
    end.acquire();
  });
  blocked.acquire();
  EXPECT_EQ(FramesOf(id), 0);
  EXPECT_EQ(FramesOf(id), 0) << "asked once more, with the first question still open";
  unblock.release();
  int tries = 0;
  while (FramesOf(id) == 0 && tries < 60) ++tries;  // a second each, on a machine that has no time for the thread
  EXPECT_LT(tries, 60);
  end.release();
  deaf.join();
  symCleanupCurrentProcess();
}

}  // namespace
