#pragma once

#include <string_view>

#include "RapidJson.h"

namespace TESSARIN_COMMON {

// A document whose text comes from outside. It is read without recursion, so that no nesting exhausts the stack of the
// thread, and a number beyond a double's range is an error and no infinity, which no text could show again. Doubles may
// come out a unit or two of their last place off: the exact reading of the library in use leaves its tables at numbers
// like 1e309. A failure is a runtime error: "Parse json string fail. err=<message>. offset=<up to 32 characters from
// the place on>".
class JsonDocument : public rapidjson::GenericDocument<rapidjson::UTF8<>, JsonPool, JsonMemory> {
 public:
  using Base = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonPool, JsonMemory>;
  using Base::Base;

  void ParseText(std::string_view text);
  // The strings stay in `copy`, a copy of the text with a NUL behind it, which is changed.
  void ParseInPlace(char* copy, std::string_view text);

  // The reader's call for a number.
  bool Double(double value);

 private:
  template <unsigned kFlags, class Stream>
  void ParseFrom(Stream& stream, std::string_view text);
};

}  // namespace TESSARIN_COMMON
