#pragma once

#include <mutex>
#include <string>

#include "FirmwareTable.h"
#include "common/Singleton.h"

namespace QX_MONITOR {

// Remembers who made the machine and what it is called. Any thread may call.
class LibMonitorSystem : public TESSARIN_COMMON::Singleton<LibMonitorSystem> {
 public:
  [[nodiscard]] std::string Model() { return Remembered(&MachineNames::model); }
  [[nodiscard]] std::string Manufacturer() { return Remembered(&MachineNames::manufacturer); }

 private:
  // An empty name is not remembered: a machine without a model is asked on every call.
  std::string Remembered(std::string MachineNames::*name);

  std::mutex mutex_;  // guards names_
  MachineNames names_;
};

}  // namespace QX_MONITOR
