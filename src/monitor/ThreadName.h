#pragma once

#include <cstdint>
#include <string>

#include "ThreadHandle.h"

namespace QX_MONITOR {

// "<name>(<id>)"; empty for a thread without a name. Windows: the thread's description, where the system knows such.
// Linux: the kernel's name of it, of at most 15 bytes. A thread is born with its maker's name there, so the name of
// the whole process counts as none.
[[nodiscard]] std::string ThreadName(const ThreadHandle& thread, std::uint32_t id);

}  // namespace QX_MONITOR
