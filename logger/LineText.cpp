#include "LineText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace logger {
namespace {

bool IsControl(char c) {
  return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7f;
}

// Whether one of eight bytes may be a control character: below a blank, or DEL.
bool MayHoldControl(const char* eightBytes) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, eightBytes, sizeof bytes);
  const std::uint64_t belowBlank = (bytes - kOnes * 0x20) & ~bytes;
  const std::uint64_t distance = bytes ^ (kOnes * 0x7f);
  const std::uint64_t isDel = (distance - kOnes) & ~distance;
  return ((belowBlank | isDel) & kHighBits) != 0;
}

// Nearly all lines are long and hold none, so whole words are passed over.
std::string_view::iterator FindControl(std::string_view::iterator from, std::string_view::iterator end) {
  constexpr std::ptrdiff_t kWord = 8;
  while (end - from >= kWord && !MayHoldControl(&*from)) from += kWord;
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
