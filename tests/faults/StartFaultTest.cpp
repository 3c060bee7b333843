// Threads that do not come, and a library that cannot be loaded.
#include <memory>
#include <mutex>

#include "FaultTest.h"
#include "engine/EngineApi.h"
#include "ipc/IPCServer.h"
#include "support/LogCapture.h"
#include "support/PipeName.h"
#include "support/Process.h"
#include "task/TaskRunner.h"
#include "task/TimerTaskRunner.h"

namespace {

using faults::Case;
using TESSARIN_LUMARC::EngineApi;

using StartFault = faults::FaultTest;

struct Nobody final : TESSARIN_COMMON::IIPCDelegate {
  void OnConnected() override {}
  void OnDisconnect() override {}
  void OnDataReceived(const char*, std::uint32_t) override {}
  void OnErrorReport(std::int32_t, const char*) override {}
};

// A runner, a timer and an endpoint: which of them did not start. One that did has to work, and all have to stop.
std::string StartThreads() {
  std::string outcome;
  TESSARIN_TASK::TaskRunner tasks(TESSARIN_TASK::TaskRunner::kMain);
  const bool tasksRun = tasks.StartRunner();
  // Also where the post finds no memory: a runner's thread must not outlive it.
  const auto stop = [](TESSARIN_TASK::TaskRunner* runner) { runner->StopRunner(); };
  const std::unique_ptr<TESSARIN_TASK::TaskRunner, decltype(stop)> stopper(&tasks, stop);
  bool ran = false;
  if (tasksRun) tasks.PostTaskAndWait({}, [&] { ran = tasks.IsCurrentThread(); });
  tasks.StopRunner();
  TESSARIN_TASK::TimerTaskRunner timers;
  const bool timersRun = timers.StartRunner({}, {});
  timers.StopRunner();
  Nobody nobody;
  TESSARIN_COMMON::IPCServer server(support::UniquePipeName());
  server.SetDelegate(&nobody);
  const bool serverRuns = server.Start();
  server.Stop();
  if (!tasksRun) outcome += "no tasks";
  if (tasksRun && !ran) outcome += "a task does not know its thread, ";
  if (!timersRun) outcome += "no timers";
  if (!serverRuns) outcome += "no server";
  return outcome.empty() ? "done" : outcome;
}

// The tiny engine exports three names; those that are missing stay empty.
std::string LoadEngine() {
  const support::LogCapture log;
  auto& api = EngineApi::GetInstance();
  const bool loaded = api.Load(support::BesideTest(TINY_ENGINE));
  faults::Disarm();
  if (!loaded) return log.Lines().empty() ? "silence" : log.Lines().back().text.substr(0, 23);
  const int found =
      static_cast<int>(static_cast<bool>(api.SetDevice)) + static_cast<int>(static_cast<bool>(api.OnDeviceChange));
  return found == 2 ? "done" : "without an entry";
}

TEST_P(StartFault, OfAThreadIsToldToTheStarter) {
  faults::ExpectOutcomes(GetParam(), StartThreads);
}

INSTANTIATE_TEST_SUITE_P(All, StartFault,
                         testing::Values(Case{"pthread_create", {"no tasks", "no timers", "no server"}},
                                         Case{"pthread_key_create", {"no tasks", "no timers"}},
                                         Case{faults::kMemory,
                                              {"done", "no memory", "no tasks", "no timers", "no server"}}),
                         faults::NameOf);

TEST(EngineFault, OfTheLibraryIsALineAndOfASymbolAnEmptyEntry) {
  faults::ExpectOutcomes({"dlopen", {"engine library: dlopen:"}}, LoadEngine);
  faults::ExpectOutcomes({"dlsym", {"done", "without an entry"}}, LoadEngine);
}

}  // namespace
