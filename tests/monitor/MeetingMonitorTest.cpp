#include "monitor/MeetingMonitor.h"

#include <gmock/gmock.h>

#include "common/JsonWriter.h"
#include "monitor/LibMonitorSystem.h"
#include "monitor/SystemInfo.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/Semaphore.h"

using namespace QX_MONITOR;
using TESSARIN_COMMON::JsonText;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ScriptedSampler final : public ProcessSampler {
 public:
  ProcessPerformance Sample(std::uint32_t processId) override {
    const auto found = processes.find(processId);
    return found == processes.end() ? ProcessPerformance{-1, 0, 0} : found->second;
  }
  std::map<std::uint32_t, ProcessPerformance> processes;
};

class MeetingMonitorTest : public testing::Test {
 protected:
  MeetingMonitorTest()
      : monitor_(
            [this](const std::string& items) {
              sent_.push_back(items);
              arrived_.release();
            },
            timers_, sampler_, clock_) {
    timers_.StartRunner({}, {});
    monitor_.AddMonitorInfo(1, "one");
  }
  ~MeetingMonitorTest() override { timers_.StopRunner(); }

  std::vector<std::string> Sent() { return std::exchange(sent_, {}); }
  static std::string Object(const std::string& cpu, const std::string& memory, const std::string& name) {
    return R"({"pref_data_tick":{"cpu_average":)" + cpu + R"(,"memory_average":)" + memory +
           R"(},"tag":"meeting","pname":")" + name +
           R"(","enable_flags":1537,"changed_flags":0,"if_flag_changed":false})";
  }
  static std::string Items(const std::string& key, const std::string& value) {
    return JsonText(std::vector<TrackItem>{{key, value}});
  }

  const support::LogCapture log_;
  support::FakeClock clock_;
  TESSARIN_TASK::TimerTaskRunner timers_{clock_};
  ScriptedSampler sampler_;
  std::vector<std::string> sent_;
  support::Semaphore arrived_;
  MeetingMonitor monitor_;
};

TEST_F(MeetingMonitorTest, ReportsTheStartRequestsAndJoins) {
  const std::string key = "vc_meeting_pcsdk_server_cost_time";
  auto& names = LibMonitorSystem::GetInstance();
  DevicePerformance machine{};
  machine.cpuCores = 4;
  machine.cpuThreads = 8;
  machine.memory = 512.5;
  monitor_.ReportInitCost(37, machine);
  monitor_.ReportFunctionCost("Slow", 301);
  monitor_.ReportJoinCost(0);
  monitor_.ReportJoinCost(5);
  monitor_.ReportJoinTimeout();
  EXPECT_THAT(Sent(),
              ElementsAre(Items(key, R"([{"sdk_module_name":"ravo_init_total_time_ms_v2","sdk_module_cost":37,)"
                                     R"("system_basic_info":{"cpu_num":8,"physical_cpu_num":4,"os_type":"Windows",)"
                                     R"("total_memory":512.5,"os_version":)" +
                                         JsonText(OsVersion()) + R"(,"manufacturer":)" +
                                         JsonText(names.Manufacturer()) + R"(,"model":)" + JsonText(names.Model()) +
                                         R"(,"arch":)" + (sizeof(void*) == 4 ? R"("x86")" : R"("x86_64")") + "}}]"),
                          Items(key, R"([{"function_name":"Slow","cost":301}])"),
                          Items(key, R"([{"sdk_join_meeting_cost":5}])"),
                          Items(key, R"([{"sdk_join_meeting_timeout":true}])")));
}

TEST_F(MeetingMonitorTest, ReportsAProcessFromItsSecondSnapshotOnAndSkipsTheDead) {
  DevicePerformance machine{};
  machine.cpuThreads = 4;
  monitor_.ReportInitCost(1, machine);
  Sent();
  monitor_.AddMonitorInfo(2, "two");
  sampler_.processes = {{1, {0, 1'000'000'000, 100}}};
  monitor_.StartMeetingSnapshot(true);
  EXPECT_THAT(Sent(), IsEmpty());
  monitor_.StopMeetingSnapshot();

  clock_.AdvanceMs(2000);  // the next meeting compares with the last one
  sampler_.processes = {{1, {0, 2'000'000'000, 200}}, {2, {0, 5, 6}}};
  monitor_.StartMeetingSnapshot(true);
  EXPECT_THAT(Sent(), ElementsAre(Items("vc_pc_meeting_perf_monitor", "[" + Object("200.0", "200.0", "one") + "]")));
  monitor_.StopMeetingSnapshot();

  clock_.AdvanceMs(1000);
  sampler_.processes = {{2, {0, 5, 7}}};
  monitor_.StartMeetingSnapshot(true);
  EXPECT_THAT(Sent(), ElementsAre(Items("vc_pc_meeting_perf_monitor", "[" + Object("0.0", "7.0", "two") + "]")));
}

TEST_F(MeetingMonitorTest, SnapsEveryTenMinutesUntilItIsStopped) {
  sampler_.processes = {{1, {0, 0, 1}}};
  monitor_.StartMeetingSnapshot(false);
  EXPECT_TRUE(log_.Has("monitor not enabled"));
  monitor_.StartMeetingSnapshot(true);
  for (int i = 0; i < 2; ++i) {
    clock_.AdvanceMs(600'000);
    arrived_.acquire();
  }
  monitor_.StopMeetingSnapshot();
  EXPECT_EQ(Sent().size(), 2u);
  support::Semaphore passed;
  timers_.AddTimer(600'000, [&] { passed.release(); });
  clock_.AdvanceMs(600'000);
  passed.acquire();
  EXPECT_THAT(Sent(), IsEmpty());
}

}  // namespace
