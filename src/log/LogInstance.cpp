#include "LogInstance.h"

#include <ravo/log_abi.h>

#include <new>

namespace TESSARIN_LOG {

void LogInstance::WriteFormatted(const char* module, Level level, fmt::string_view format, fmt::format_args args) {
  constexpr std::size_t kInlineBytes = 4096;  // a usual line, a logged request included, needs no heap
  try {
    fmt::basic_memory_buffer<char, kInlineBytes> line;
    fmt::vformat_to(fmt::appender(line), format, args);
    line.push_back('\0');
    TessarinLogWrite(module, static_cast<int>(level), line.data());
  } catch (const std::bad_alloc&) {
    TessarinLogWrite(module, static_cast<int>(level), format.data());  // a literal, which ends with NUL
  }
}

}  // namespace TESSARIN_LOG
