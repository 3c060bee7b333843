#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string_view>

#include "ReservedList.h"

namespace QX_MONITOR {

// One mapping of a process.
struct Mapping {
  std::uint64_t start = 0;
  std::uint64_t end = 0;
  std::uint64_t fileOffset = 0;
  std::uint32_t flags = 0;       // PF_R, PF_W, PF_X
  std::uint32_t nameOffset = 0;  // in the names of the map
  std::uint32_t nameSize = 0;
  bool isShared = false;
  bool isExcluded = false;   // by the process itself, or no memory at all
  bool hasOwnPages = false;  // that differ from a file's or from nothing
};

// The mappings of another process in the order of their addresses. Made before the fork, as StoppedThreads is.
class MemoryMap {
 public:
  MemoryMap() : mappings_(kMostMappings), names_(kMostNameBytes) {}

  [[nodiscard]] bool Read(pid_t process);

  [[nodiscard]] std::span<const Mapping> Mappings() const { return mappings_.Items(); }
  // A path, a name in brackets such as "[vdso]", or nothing.
  [[nodiscard]] std::string_view NameOf(const Mapping& mapping) const {
    return {names_.Items().data() + mapping.nameOffset, mapping.nameSize};
  }
  [[nodiscard]] bool IsFile(const Mapping& mapping) const { return NameOf(mapping).starts_with('/'); }

 private:
  static constexpr std::size_t kMostMappings = 65000;  // an ELF header counts no more without tricks
  static constexpr std::size_t kMostNameBytes = 8 << 20;

  bool AddLine(std::string_view line);
  bool AddMapping(std::string_view line);

  ReservedList<Mapping> mappings_;
  ReservedList<char> names_;
};

}  // namespace QX_MONITOR
