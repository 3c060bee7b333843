#include "PowerSaveBlockerImpl.h"

#include <utility>

#include "common/Platform.h"
#include "log/LogInstance.h"
#include "log/ScopeTracer.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_COMMON::LastSystemError;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::ScopeTracer;

constexpr const char* kModule = "Ravo";
constexpr auto kNone = PowerRequests::kNone;

}  // namespace

PowerSaveBlockerImpl::PowerSaveBlockerImpl(std::unique_ptr<PowerRequests> requests) : requests_(std::move(requests)) {}

bool PowerSaveBlockerImpl::StartPreventDisplaySleep() {
  const ScopeTracer trace("TESSARIN_POWER::PowerSaveBlockerImpl::StartPreventDisplaySleep", kModule);
  if (displaySleep_ != kNone) {
    Log("preventDisplaySleepHandle is not null, already started");
    return true;
  }
  displaySleep_ = CreatePowerRequest(PowerRequestType::DisplayRequired);
  return displaySleep_ != kNone;
}

bool PowerSaveBlockerImpl::StartPreventAppSuspension() {
  const ScopeTracer trace("TESSARIN_POWER::PowerSaveBlockerImpl::StartPreventAppSuspension", kModule);
  if (appSuspension_ != kNone) {
    Log("preventAppSuspensionHandle is not null, already started");
    return true;
  }
  appSuspension_ = CreatePowerRequest(requests_->ApplicationType());
  return appSuspension_ != kNone;
}

void PowerSaveBlockerImpl::StopPreventDisplaySleep() {
  const ScopeTracer trace("TESSARIN_POWER::PowerSaveBlockerImpl::StopPreventDisplaySleep", kModule);
  if (displaySleep_ == kNone) return;
  DeletePowerRequest(std::exchange(displaySleep_, kNone), PowerRequestType::DisplayRequired);
}

void PowerSaveBlockerImpl::StopPreventAppSuspension() {
  const ScopeTracer trace("TESSARIN_POWER::PowerSaveBlockerImpl::StopPreventAppSuspension", kModule);
  if (appSuspension_ == kNone) return;
  DeletePowerRequest(std::exchange(appSuspension_, kNone), requests_->ApplicationType());
}

PowerRequests::Handle PowerSaveBlockerImpl::CreatePowerRequest(PowerRequestType type) {
  const ScopeTracer trace("TESSARIN_POWER::CreatePowerRequest", kModule);
  const Handle handle = requests_->Create();
  if (handle == kNone) {
    Log("PowerCreateRequest fail errorcode:{}", LastSystemError());
    return kNone;
  }
  if (requests_->Set(handle, type)) return handle;
  Log("PowerSetRequest fail errorcode:{}", LastSystemError());
  Clear(handle, type);
  requests_->Close(handle);
  return kNone;
}

void PowerSaveBlockerImpl::DeletePowerRequest(Handle handle, PowerRequestType type) {
  const ScopeTracer trace("TESSARIN_POWER::DeletePowerRequest", kModule);
  Clear(handle, type);
  requests_->Close(handle);
}

void PowerSaveBlockerImpl::Clear(Handle handle, PowerRequestType type) {
  if (!requests_->Clear(handle, type)) Log("PowerClearRequest fail errorcode:{}", LastSystemError());
}

}  // namespace TESSARIN_POWER
