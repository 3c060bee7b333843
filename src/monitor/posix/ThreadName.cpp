#include "../ThreadName.h"

#include <unistd.h>

#include <fstream>

namespace QX_MONITOR {

namespace {

std::string NameInKernel(std::uint32_t id) {
  std::ifstream file("/proc/self/task/" + std::to_string(id) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

}  // namespace

void ThreadHandleTraits::Close(Type) {}

// Neither names nor stacks of the own threads need a right.
ThreadHandle OpenThreadById(std::uint32_t id, ThreadAccess) {
  return ThreadHandle(id);
}

std::string ThreadName(const ThreadHandle& thread, std::uint32_t id) {
  const std::string name = NameInKernel(static_cast<std::uint32_t>(thread.Get()));
  if (name.empty() || name == NameInKernel(static_cast<std::uint32_t>(getpid()))) return "";
  return name + "(" + std::to_string(id) + ")";
}

}  // namespace QX_MONITOR
