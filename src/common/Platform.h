#pragma once

#include <cstdint>
#include <string>

// Small questions to the system that every subsystem may ask.
namespace TESSARIN_COMMON {

[[nodiscard]] std::uint32_t CurrentProcessId();
// The system's id of the calling thread.
[[nodiscard]] std::uint32_t CurrentThreadId();

// The wall clock, milliseconds since 1970, as of the system's last tick: some milliseconds old, at a fraction of the
// price.
[[nodiscard]] std::int64_t WallTickMs();

// The calling thread's last system error: GetLastError on Windows, errno elsewhere.
[[nodiscard]] int LastSystemError();
// The system's English text of an error, with trailing blanks and line ends removed; empty if it has none.
[[nodiscard]] std::string SystemErrorText(int code);

}  // namespace TESSARIN_COMMON
