#pragma once

#include <ravo/ravo.h>

#include <string>

#include "FirmwareTable.h"

// What the machine says of itself. Any thread may call.
namespace QX_MONITOR {

// Times of all processors since the start, idle counted within kernel too. All 0 if the system does not tell.
[[nodiscard]] SystemCpuTime ReadSystemCpuTime();

// "<major>.<minor>.<build>" of the system: the true numbers, whatever the program says it was made for. On Linux the
// three numbers of the kernel's release.
[[nodiscard]] std::string OsVersion();

// Reads the firmware's table anew. On Linux only root may read it; for others the names come from what the kernel
// took out of the table at its start.
[[nodiscard]] MachineNames ReadMachineNames();

}  // namespace QX_MONITOR
