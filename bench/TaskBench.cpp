// Posting and running tasks, against the executor that a C++ engineer would take.
#include <functional>
#include <string>

#include "Server.h"
#include "Subjects.h"
#include "Table.h"
#include "peers/Asio.h"
#include "task/TaskRunner.h"

namespace bench {

namespace {

constexpr int kRounds = 45;

void Compare(Table& table, TESSARIN_TASK::TaskRunner& runner, int producers, const std::string& cores) {
  const auto ours = [&](Samples& samples) {
    samples.push_back(Throughput(producers, [&](auto task) { runner.PostTask({"bench", "bench"}, task); }));
  };
  std::function<void(Samples&)> theirs;
  if (AsioThroughput != nullptr) theirs = [&](Samples& samples) { samples.push_back(AsioThroughput(producers)); };
  table.Compare(std::to_string(producers) + " from " + cores, {{"ravo", ours}, {"asio::post", theirs}},
                {{}, AtLeast(1.5)}, kRounds);
}

}  // namespace

// On one core producers and runner take turns; on all of them they meet at the queue, as they do in a server.
void TaskSubject(const std::string& out) {
  TESSARIN_TASK::TaskRunner runner(TESSARIN_TASK::TaskRunner::kNormal);
  runner.StartRunner();
  Table table("task", "post from so many threads and run, to the end of the last task; one thread of asio", "M tasks/s",
              Table::Better::Higher);
  for (const int producers : {1, 4}) Compare(table, runner, producers, "one core");
  UseCores(Cores::All);
  for (const int producers : {1, 4}) Compare(table, runner, producers, "all cores");
  table.Finish(out);
  runner.StopRunner();
}

}  // namespace bench
