#include "PowerMonitorImpl.h"

#include <utility>

#include "log/ScopeTracer.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_LOG::ScopeTracer;

constexpr TESSARIN_TASK::Location kPlace{"PowerMonitorImpl", "src/power/PowerMonitorImpl"};

}  // namespace

PowerMonitorImpl::PowerMonitorImpl(std::unique_ptr<SleepWatch> watch) : watch_(std::move(watch)) {
  runner_.SetWaitingBudget(300);
  runner_.SetRunningBudget(200);
  runner_.StartRunner();
}

PowerMonitorImpl::~PowerMonitorImpl() {
  ++queued_;
  watch_->Wake();
  runner_.PostTaskAndWait(kPlace, [this] { watch_->Close(); });
  runner_.StopRunner();
}

bool PowerMonitorImpl::StartPowerMonitor(std::function<void()> resume, std::function<void()> suspend) {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitorImpl::StartPowerMonitor", "Ravo");
  Post([this, callbacks = SleepCallbacks{std::move(resume), std::move(suspend)}] { watch_->Open(callbacks); });
  return true;
}

void PowerMonitorImpl::StopPowerMonitor() {
  const ScopeTracer trace("TESSARIN_POWER::PowerMonitorImpl::StopPowerMonitor", "Ravo");
  Post([this] { watch_->Close(); });
}

// A queue of tasks does not serve what the system sends to its thread, so each task ends by doing that until the next
// one comes.
void PowerMonitorImpl::Post(TESSARIN_TASK::TaskRunner::Closure closure) {
  ++queued_;
  watch_->Wake();
  runner_.PostTask(kPlace, [this, work = std::move(closure)] {
    --queued_;
    work();
    Serve();
  });
}

void PowerMonitorImpl::Serve() {
  while (queued_ == 0 && watch_->IsOpen()) watch_->Serve();
}

}  // namespace TESSARIN_POWER
