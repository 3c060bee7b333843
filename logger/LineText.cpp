#include "LineText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace logger {
namespace {

bool IsControl(char c) {
  return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f;
}

constexpr std::ptrdiff_t kBlock = 32;

// Whether a byte of the block may be a control character: a tab counts, too. Without a branch, so that the compiler
// takes many bytes at once.
bool MayHoldControl(const char* block) {
  unsigned found = 0;
  for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
    const auto byte = static_cast<unsigned char>(block[i]);
    found |= static_cast<unsigned>(byte < 0x20) | static_cast<unsigned>(byte == 0x7f);
  }
  return found != 0;
}

// Nearly all lines are long and hold none, so whole blocks are passed over.
std::string_view::iterator FindControl(std::string_view::iterator from, std::string_view::iterator end) {
  while (end - from >= kBlock && !MayHoldControl(&*from)) from += kBlock;
  return std::find_if(from, end, IsControl);
}

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
  auto control = FindControl(rest, text.end());
  if (control == text.end()) return text;
  while (control != text.end()) {
    buffer.append(rest, control);
    AppendEscaped(buffer, *control);
    rest = control + 1;
    control = FindControl(rest, text.end());
  }
  buffer.append(rest, text.end());
  return {buffer.data(), buffer.size()};
}

}  // namespace logger
