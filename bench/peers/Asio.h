#pragma once

#include <thread>
#include <vector>

#include "../Measure.h"
#include "task/ThreadPlatform.h"

namespace bench {

// Million tasks a second, from the first post to the end of the last task, with so many producers. `post` is given a
// task and has one thread run it.
template <class Post>
double Throughput(int producers, Post post) {
  constexpr int kTasks = 200'000;
  struct {
    int left = kTasks;
    TESSARIN_TASK::AutoResetEvent done;
  } counter;
  const auto task = [&counter] {
    if (--counter.left == 0) counter.done.Set();
  };
  const double nanoseconds = NanosecondsOf([&] {
    std::vector<std::thread> threads;
    for (int p = 0; p < producers; ++p) {
      threads.emplace_back([&] {
        for (int i = 0; i < kTasks / producers; ++i) post(task);
      });
    }
    for (auto& thread : threads) thread.join();
    counter.done.Wait();
  });
  return kTasks / nanoseconds * 1000;
}

// The throughput of an io_context that one thread runs. Null where the library is not installed.
[[gnu::weak]] double AsioThroughput(int producers);

}  // namespace bench
