#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>

#include "peers/EchoPeer.h"

namespace bench {

// Zeroed memory that this process shares with those it forks.
class SharedMemory {
 public:
  explicit SharedMemory(std::size_t sizeBytes)
      : sizeBytes_(sizeBytes),
        memory_(mmap(nullptr, sizeBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    Require(memory_ != MAP_FAILED, "mmap");
  }
  ~SharedMemory() { munmap(memory_, sizeBytes_); }
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  [[nodiscard]] std::uint8_t* Bytes() const { return static_cast<std::uint8_t*>(memory_); }

 private:
  const std::size_t sizeBytes_;
  void* const memory_;
};

}  // namespace bench
