#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravo::ctl {

struct ThreadSample {
  std::uint32_t id = 0;
  std::string name;         // empty if it has none, or the system keeps none
  std::uint64_t cpuNs = 0;  // user and kernel time
};

struct ProcessSample {
  std::string name;         // of its program
  std::uint64_t cpuNs = 0;  // of all threads that it ever had
  std::uint64_t memoryBytes = 0;
  std::vector<ThreadSample> threads;
};

// A process at this moment; nothing if there is none or it may not be read.
[[nodiscard]] std::optional<ProcessSample> SampleProcess(std::uint32_t pid);

}  // namespace ravo::ctl
