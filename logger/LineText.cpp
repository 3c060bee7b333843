#include "LineText.h"

#include <algorithm>
#include <iterator>

namespace logger {
namespace {

bool IsControl(char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f; }

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
  auto rest = text.begin();
  auto control = std::find_if(rest, text.end(), IsControl);
  if (control == text.end()) return text;
  while (control != text.end()) {
    buffer.append(rest, control);
    AppendEscaped(buffer, *control);
    rest = control + 1;
    control = std::find_if(rest, text.end(), IsControl);
  }
  buffer.append(rest, text.end());
  return {buffer.data(), buffer.size()};
}

}  // namespace logger
