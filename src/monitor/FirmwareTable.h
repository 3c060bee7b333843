#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace QX_MONITOR {

struct MachineNames {
  std::string manufacturer;
  std::string model;
};

// Reads the names of the machine out of its firmware's structures: each a type, a length, a handle and fields, then
// strings that end in two NULs. `structures` begins with the first one, without any header of the system's call. The
// bytes are not trusted: what would lie past their end is read as 0.
[[nodiscard]] MachineNames ParseFirmwareTable(std::span<const std::uint8_t> structures);

}  // namespace QX_MONITOR
