#include "ProcStat.h"

#include <unistd.h>

#include <fstream>
#include <sstream>

namespace QX_MONITOR {

std::optional<ProcStat> ReadProcStat(const std::string& path) {
  std::string line;
  if (!std::getline(std::ifstream(path), line, '\0')) return std::nullopt;
  // The name in parentheses, the second field, may hold anything; the rest holds no parentheses.
  const std::size_t nameEnd = line.rfind(')');
  if (nameEnd == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(nameEnd + 1));
  ProcStat stat;
  std::string skipped;
  fields >> stat.state;  // the 3rd field of the line
  for (int field = 4; field < 14; ++field) fields >> skipped;
  fields >> stat.userTicks >> stat.kernelTicks;  // 14th and 15th
  if (!fields) return std::nullopt;
  return stat;
}

std::uint64_t NsFromTicks(std::uint64_t ticks) {
  static const std::uint64_t nsPerTick = 1'000'000'000 / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
  return ticks * nsPerTick;
}

}  // namespace QX_MONITOR
