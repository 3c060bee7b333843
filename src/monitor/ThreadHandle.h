#pragma once

#include <cstdint>

#include "common/OwningHandle.h"

namespace QX_MONITOR {

// An opened thread of this process. On Windows the system's handle; elsewhere a thread needs no opening, and the value
// is its id.
struct ThreadHandleTraits {
  using Type = std::uintptr_t;
  static constexpr Type None() { return 0; }
  static void Close(Type thread);
};
using ThreadHandle = TESSARIN_COMMON::OwningHandle<ThreadHandleTraits>;

enum class ThreadAccess {
  Query,  // names and times
  Full,   // stopping and registers too
};

// Empty if the system refuses; the functions that take a thread then find nothing.
[[nodiscard]] ThreadHandle OpenThreadById(std::uint32_t id, ThreadAccess access);

}  // namespace QX_MONITOR
