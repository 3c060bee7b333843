#include "PowerSaveBlocker.h"

#include "log/ScopeTracer.h"

namespace TESSARIN_POWER {

PowerSaveBlocker::PowerSaveBlocker() {
  const TESSARIN_LOG::ScopeTracer trace("TESSARIN_POWER::PowerSaveBlocker::PowerSaveBlocker", "Ravo");
}

PowerSaveBlocker::~PowerSaveBlocker() {
  const TESSARIN_LOG::ScopeTracer trace("TESSARIN_POWER::PowerSaveBlocker::~PowerSaveBlocker", "Ravo");
}

}  // namespace TESSARIN_POWER
