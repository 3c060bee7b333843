#include "LineText.h"

#include <iterator>

#include "common/ByteScan.h"

namespace logger {
namespace {

constexpr auto kIsControl = [](unsigned char c) { return (((c < 0x20) & (c != '\t')) | (c == 0x7f)) != 0; };

void AppendEscaped(fmt::memory_buffer& buffer, char c) {
  if (c == '\n' || c == '\r') {
    buffer.push_back('\\');
    buffer.push_back(c == '\n' ? 'n' : 'r');
  } else {
    fmt::format_to(std::back_inserter(buffer), "\\x{:02x}", static_cast<unsigned>(c));
  }
}

}  // namespace

std::string_view OneLine(std::string_view text, fmt::memory_buffer& buffer) {
  const char* rest = text.data();
  const char* const end = rest + text.size();
  const char* control = TESSARIN_COMMON::FindByte(rest, end, kIsControl);
  if (control == end) return text;
  while (control != end) {
    buffer.append(rest, control);
    AppendEscaped(buffer, *control);
    rest = control + 1;
    control = TESSARIN_COMMON::FindByte(rest, end, kIsControl);
  }
  buffer.append(rest, end);
  return {buffer.data(), buffer.size()};
}

}  // namespace logger
