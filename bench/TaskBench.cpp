// Posting and running tasks, against the executor that a C++ engineer would take.
#include <thread>
#include <vector>

#include "Measure.h"
#include "task/TaskRunner.h"
#include "task/ThreadPlatform.h"

#ifdef RAVO_BENCH_ASIO
#include <asio.hpp>
#endif

namespace bench {

namespace {

constexpr int kTasks = 200000;
constexpr int kRounds = 15;

struct Counter {
  int left = kTasks;
  TESSARIN_TASK::AutoResetEvent done;
  void Count() {
    if (--left == 0) done.Set();
  }
};

// Million tasks a second, from the first post to the end of the last task, with so many producers.
template <class Post>
double Throughput(int producers, Post post) {
  Counter counter;
  const double ns = NanosecondsOf([&] {
    std::vector<std::thread> threads;
    for (int p = 0; p < producers; ++p) {
      threads.emplace_back([&] {
        for (int i = 0; i < kTasks / producers; ++i) post([&counter] { counter.Count(); });
      });
    }
    for (auto& thread : threads) thread.join();
    counter.done.Wait();
  });
  return kTasks / ns * 1000;
}

}  // namespace

void TaskSubject() {
#ifdef RAVO_BENCH_ASIO
  TESSARIN_TASK::TaskRunner runner(TESSARIN_TASK::TaskRunner::kNormal);
  runner.StartRunner();
  asio::io_context context(1);
  const auto work = asio::make_work_guard(context);
  std::thread asioThread([&] { context.run(); });
  PrintHead("Task runner: post and run, against asio::post on one thread", "TaskRunner", "asio");
  for (const int producers : {1, 4}) {
    std::vector<double> ours, theirs;
    for (int round = 0; round < kRounds; ++round) {
      ours.push_back(Throughput(producers, [&](auto task) { runner.PostTask({"bench", "bench"}, task); }));
      theirs.push_back(Throughput(producers, [&](auto task) { asio::post(context, task); }));
    }
    PrintRow(std::to_string(producers) + (producers == 1 ? " producer" : " producers"), Median(ours), Median(theirs),
             "M/s", 1.5, false);
  }
  context.stop();
  asioThread.join();
  runner.StopRunner();
#else
  std::printf("\nTask runner: skipped, asio is not installed\n");
#endif
}

}  // namespace bench
