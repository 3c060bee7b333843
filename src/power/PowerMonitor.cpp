#include "PowerMonitor.h"

#include <stdexcept>
#include <utility>

#include "log/LogInstance.h"
#include "log/ScopeTracer.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_LOG::Log;
using TESSARIN_LOG::ScopeTracer;

constexpr const char* kModule = "Ravo";
constexpr std::int32_t kFull = 100;

std::optional<std::int32_t> WithoutBatteryAsFull(std::optional<std::int32_t> percent) {
  return percent >= PowerSource::kNoBattery ? kFull : percent;
}

// Stores and tells what is new.
template <class T>
void Update(T& last, std::optional<T> now, const char* line, const std::function<void(T)>& tell) {
  if (!now || *now == last) return;
  last = *now;
  Log("PowerMonitor::InvokeCallback() {}:{}", line, last);
  if (tell) tell(last);
}

}  // namespace

PowerMonitor::PowerMonitor()
    : PowerMonitor(MakeSystemPowerSource(), MakeSystemSleepWatch(), PowerTimer::kTick,
                   TESSARIN_COMMON::Clock::System()) {}

PowerMonitor::PowerMonitor(std::unique_ptr<PowerSource> source, std::unique_ptr<SleepWatch> sleep,
                           std::chrono::microseconds tick, const TESSARIN_COMMON::Clock& clock)
    : source_(std::move(source)), impl_(std::move(sleep)), timer_(tick, clock) {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitor::PowerMonitor", kModule);
}

PowerMonitor::~PowerMonitor() {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitor::~PowerMonitor", kModule);
}

void PowerMonitor::SetCallbacks(PowerCallbacks callbacks) {
  callbacks_ = std::move(callbacks);
}

void PowerMonitor::StartWatch(std::int32_t seconds) {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitor::StartWatch", kModule);
  if (running_) {
    Log("Power Monitor is Running!");
    return;
  }
  if (!timer_.HasThread()) timer_.StartThread({}, {});
  constexpr std::int64_t kSecondUs = 1'000'000;
  timer_.AddTimer(seconds * kSecondUs, [this] { InvokeCallback(); });
  Log("start power monitor every {} seconds", seconds);
  if (!impl_.StartPowerMonitor(callbacks_.resume, callbacks_.suspend)) {
    Log("StartPowerMonitor fail");
    return;
  }
  running_ = true;
}

void PowerMonitor::StopWatch() {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitor::StopWatch", kModule);
  if (!running_ || !timer_.HasThread()) {
    Log("Power Monitor is not running!");
    return;
  }
  try {
    timer_.StopThread();
  } catch (const std::runtime_error& error) {
    TESSARIN_LOG::LogAt(kModule, TESSARIN_LOG::Level::Failure, "stop timer thread error: {}", error.what());
  }
  running_ = false;
  Log("Power Monitor has been stopped!");
  impl_.StopPowerMonitor();
}

void PowerMonitor::InvokeCallback() {
  const auto remaining = WithoutBatteryAsFull(source_->BatteryPercent());
  const auto mains = source_->OnMains();
  const auto saver = source_->SaverOn();
  Update(lastRemaining_, remaining, "dRemain", callbacks_.remainingChange);
  Update(lastMains_, mains, "bChange", callbacks_.mainsChange);
  Update(lastSaver_, saver, "bSaver", callbacks_.saverChange);
}

}  // namespace TESSARIN_POWER
