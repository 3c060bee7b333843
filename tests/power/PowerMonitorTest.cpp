#include "power/PowerMonitor.h"

#include <gmock/gmock.h>

#include "power/PowerTimer.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"
#include "support/Semaphore.h"

using namespace TESSARIN_POWER;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct ScriptedSource final : PowerSource {
  std::optional<std::int32_t> BatteryPercent() override { return percent; }
  std::optional<bool> OnMains() override { return mains; }
  std::optional<bool> SaverOn() override { return saver; }

  std::optional<std::int32_t> percent = 40;
  std::optional<bool> mains = true;
  std::optional<bool> saver = true;
};

// A system that sends what a test wants.
class ScriptedWatch final : public SleepWatch {
 public:
  void Open(SleepCallbacks callbacks) override {
    callbacks_ = std::move(callbacks);
    open_ = true;
  }
  void Close() override { open_ = false; }
  [[nodiscard]] bool IsOpen() const override { return open_; }
  void Serve() override {
    wake_.acquire();
    const std::lock_guard lock(mutex_);
    for (const PowerEvent event : std::exchange(events_, {})) ProcessPowerEvent(event, callbacks_);
  }
  void Wake() override { wake_.release(); }

  void Send(PowerEvent event) {
    const std::lock_guard lock(mutex_);
    events_.push_back(event);
    wake_.release();
  }

 private:
  support::Semaphore wake_;
  std::mutex mutex_;  // guards events_
  std::vector<PowerEvent> events_;
  bool open_ = false;
  SleepCallbacks callbacks_;
};

class PowerMonitorTest : public testing::Test {
 protected:
  PowerMonitorTest() {
    const auto heard = [this](std::string what) {
      const std::lock_guard lock(mutex_);
      heard_.push_back(std::move(what));
      count_.release();
    };
    monitor_.SetCallbacks({.saverChange = [=](bool on) { heard("saver " + std::to_string(on)); },
                           .mainsChange = [=](bool on) { heard("mains " + std::to_string(on)); },
                           .remainingChange = [=](std::int32_t percent) { heard(std::to_string(percent)); },
                           .resume = [=] { heard("resume"); },
                           .suspend = [=] { heard("suspend"); }});
  }

  // What was heard since the last call; waits for so much.
  std::vector<std::string> Heard(int count = 0) {
    for (int i = 0; i < count; ++i) count_.acquire();
    const std::lock_guard lock(mutex_);
    return std::exchange(heard_, {});
  }
  std::vector<std::string> Poll(std::optional<std::int32_t> percent, std::optional<bool> mains,
                                std::optional<bool> saver) {
    source_.percent = percent;
    source_.mains = mains;
    source_.saver = saver;
    monitor_.InvokeCallback();
    return Heard();
  }

  const support::LogCapture log_;
  support::FakeClock clock_;
  std::mutex mutex_;  // guards heard_
  std::vector<std::string> heard_;
  support::Semaphore count_;
  ScriptedSource& source_ = *new ScriptedSource;
  ScriptedWatch& watch_ = *new ScriptedWatch;
  PowerMonitor monitor_{std::unique_ptr<PowerSource>(&source_), std::unique_ptr<SleepWatch>(&watch_),
                        std::chrono::milliseconds(1), clock_};
};

TEST_F(PowerMonitorTest, TellsOfWhatDiffersFromTheLastPollAndOfTheSaverAtTheFirst) {
  EXPECT_THAT(Poll(255, true, false), ElementsAre("saver 0"));
  EXPECT_THAT(Poll(255, true, false), IsEmpty());
  EXPECT_THAT(Poll(40, false, true), ElementsAre("40", "mains 0", "saver 1"));
  EXPECT_THAT(Poll(std::nullopt, std::nullopt, std::nullopt), IsEmpty());
  EXPECT_THAT(Poll(39, false, true), ElementsAre("39"));
  EXPECT_THAT(Poll(300, true, true), ElementsAre("100", "mains 1"));
  EXPECT_TRUE(log_.Has("PowerMonitor::InvokeCallback() dRemain:40"));
}

TEST_F(PowerMonitorTest, PollsAtTheFirstPeriodThatItWasGiven) {
  monitor_.StartWatch(10);
  monitor_.StartWatch(1);
  EXPECT_TRUE(log_.Has("Power Monitor is Running!"));
  EXPECT_TRUE(log_.Has("start power monitor every 10 seconds"));
  EXPECT_FALSE(log_.Has("start power monitor every 1 seconds"));
  clock_.AdvanceMs(10000);
  EXPECT_THAT(Heard(1), ElementsAre("40"));
  monitor_.StopWatch();
}

TEST_F(PowerMonitorTest, WithoutAPeriodPassesSleepAloneOnAsItComes) {
  monitor_.StartWatch(0);
  clock_.AdvanceMs(1'000'000);
  const PowerEvent events[] = {PowerEvent::ResumeAutomatic, PowerEvent::Suspend,         PowerEvent::Suspend,
                               PowerEvent::StatusChange,    PowerEvent::ResumeAutomatic, PowerEvent{7}};
  for (const PowerEvent event : events) watch_.Send(event);
  EXPECT_THAT(Heard(4), ElementsAre("resume", "suspend", "suspend", "resume"));
  EXPECT_TRUE(log_.WaitFor("ProcessWmPowerBroadcastMessage event_id:7"));
  EXPECT_TRUE(log_.Has("on power event: PBT_APMPOWERSTATUSCHANGE"));
}

TEST_F(PowerMonitorTest, StartsAnewAfterEachStop) {
  monitor_.StopWatch();
  EXPECT_TRUE(log_.Has("Power Monitor is not running!"));
  for (int i = 0; i < 20; ++i) {  // whatever of it the runner has got to meanwhile
    monitor_.StartWatch(3600);
    monitor_.StopWatch();
  }
  EXPECT_EQ(log_.Count("Power Monitor has been stopped!"), 20);
  monitor_.StartWatch(3600);
  watch_.Send(PowerEvent::ResumeAutomatic);
  EXPECT_THAT(Heard(1), ElementsAre("resume"));
}

TEST_F(PowerMonitorTest, AStopFromItsOwnCallbackEndsTheWatchAndNotTheTimer) {
  PowerCallbacks callbacks;
  callbacks.remainingChange = [this](std::int32_t) { monitor_.StopWatch(); };
  monitor_.SetCallbacks(std::move(callbacks));
  monitor_.StartWatch(1);
  clock_.AdvanceMs(1000);
  EXPECT_TRUE(log_.WaitFor("Power Monitor has been stopped!"));
  EXPECT_TRUE(log_.Has("stop timer thread error: Cannot be call stopThread in timer callback"));
  monitor_.StartWatch(1);
  EXPECT_FALSE(log_.Has("Power Monitor is Running!"));
}

TEST(PowerTimerTest, FiresOnceAnIntervalBetweenItsHooksUntilItIsCancelled) {
  std::string order;
  support::Semaphore passed;
  support::FakeClock clock;
  PowerTimer timer(std::chrono::milliseconds(1), clock);
  constexpr std::int64_t kSecondUs = 1'000'000;
  EXPECT_EQ(timer.AddTimer(kSecondUs, [] {}), -1);  // no thread
  timer.StartThread([&] { order += "start "; }, [&] { order += "stop "; });
  const std::int32_t id = timer.AddTimer(kSecondUs, [&] { order += "fired "; });
  timer.AddTimer(kSecondUs, [&] { passed.release(); });  // behind the other in each pass
  for (int i = 0; i < 2; ++i) {
    clock.AdvanceMs(5000);  // what was missed fires once
    passed.acquire();
  }
  timer.CancelTimer(id);
  clock.AdvanceMs(5000);
  passed.acquire();
  timer.StopThread();
  EXPECT_EQ(order, "start fired fired stop ");
}

}  // namespace
