#include "LibMonitorSystem.h"

#include "SystemInfo.h"

namespace QX_MONITOR {

std::string LibMonitorSystem::Remembered(std::string MachineNames::*name) {
  const std::lock_guard lock(mutex_);
  if ((names_.*name).empty()) names_ = ReadMachineNames();
  return names_.*name;
}

}  // namespace QX_MONITOR
