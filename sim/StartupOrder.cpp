#include "StartupOrder.h"

#include "Journal.h"

namespace sim {
namespace {

constexpr const char* kPhaseNames[] = {"before VemoraInit", "between VemoraInit and VemoraInitRtc",
                                       "between VemoraInitRtc and VemoraInitDevice", "after VemoraInitDevice",
                                       "after DestroyServer"};

}  // namespace

StartupOrder& StartupOrder::Get() {
  static auto* const order = new StartupOrder;
  return *order;
}

StartupOrder::Kind StartupOrder::KindOf(std::string_view entry, bool isRegistration) {
  if (isRegistration) return Kind::Registration;
  if (entry.starts_with("ServerOption")) return Kind::Option;
  if (entry == "VemoraInit") return Kind::Init;
  if (entry == "VemoraInitRtc") return Kind::InitRtc;
  if (entry == "VemoraInitDevice") return Kind::InitDevice;
  if (entry == "DestroyServer") return Kind::Destroy;
  return Kind::Call;
}

void StartupOrder::Check(Kind kind, std::string_view entry) {
  Phase phase;
  {
    const std::lock_guard lock(mutex_);
    phase = phase_;
    if (Fits(kind, phase)) Advance(kind);
  }
  if (Fits(kind, phase)) return;
  Journal::Get().Violation(std::string(entry) + " came " + kPhaseNames[static_cast<int>(phase)]);
}

bool StartupOrder::Fits(Kind kind, Phase phase) {
  switch (kind) {
    case Kind::Option:
      return phase == Phase::Options || phase == Phase::Running;
    case Kind::Init:
      return phase == Phase::Options;
    case Kind::Registration:
      return phase == Phase::Registrations;
    case Kind::InitRtc:
      return phase == Phase::Registrations;
    case Kind::InitDevice:
      return phase == Phase::Rtc;
    case Kind::Call:
      return phase == Phase::Running;
    case Kind::Destroy:
      return phase != Phase::Destroyed;
  }
  return false;
}

void StartupOrder::Advance(Kind kind) {
  if (kind == Kind::Init) phase_ = Phase::Registrations;
  if (kind == Kind::InitRtc) phase_ = Phase::Rtc;
  if (kind == Kind::InitDevice) phase_ = Phase::Running;
  if (kind == Kind::Destroy) phase_ = Phase::Destroyed;
}

}  // namespace sim
