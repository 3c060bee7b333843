#include "JsonBufferWriter.h"

#include "ByteScan.h"

namespace TESSARIN_COMMON {

namespace {
constexpr auto kNeedsEscape = [](unsigned char c) { return ((c < 0x20) | (c == '"') | (c == '\\')) != 0; };
}  // namespace

bool JsonBufferWriter::String(const char* text, std::size_t length) {
  Prefix(rapidjson::kStringType);
  const char* const end = text + length;
  os_->Put('"');
  for (;;) {
    const char* const escaped = FindByte(text, end, kNeedsEscape);
    Append(text, static_cast<std::size_t>(escaped - text));
    if (escaped == end) break;
    AppendEscape(*escaped);
    text = escaped + 1;
  }
  os_->Put('"');
  return EndValue(true);
}

void JsonBufferWriter::Append(const char* text, std::size_t length) {
  if (length != 0) std::memcpy(os_->Push(length), text, length);
}

void JsonBufferWriter::AppendEscape(char c) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  switch (c) {
    case '"':
      return Append("\\\"", 2);
    case '\\':
      return Append("\\\\", 2);
    case '\b':
      return Append("\\b", 2);
    case '\f':
      return Append("\\f", 2);
    case '\n':
      return Append("\\n", 2);
    case '\r':
      return Append("\\r", 2);
    case '\t':
      return Append("\\t", 2);
    default:
      const char escape[] = {'\\', 'u', '0', '0', kHexDigits[c >> 4], kHexDigits[c & 0xF]};
      return Append(escape, sizeof escape);
  }
}

}  // namespace TESSARIN_COMMON
