#pragma once

#include <cstddef>
#include <cstring>

#include "RapidJson.h"

namespace TESSARIN_COMMON {

// The library's writer, but for strings: the library looks at each character by itself, this one copies what lies
// between two escapes in one piece. The text is the same.
class JsonBufferWriter : public rapidjson::Writer<JsonBuffer, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory> {
 public:
  explicit JsonBufferWriter(JsonBuffer& buffer) : Writer(buffer) {}

  bool Key(const char* text) { return String(text, std::strlen(text)); }
  bool String(const char* text, std::size_t length);

 private:
  void Append(const char* text, std::size_t length);
  void AppendEscape(char c);
};

}  // namespace TESSARIN_COMMON
