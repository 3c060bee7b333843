#include "ThreadList.h"

namespace QX_MONITOR {

std::string ShownName(const std::string& name, std::uint32_t id) {
  return name.empty() ? "thread " + std::to_string(id) : name;
}

}  // namespace QX_MONITOR
