#include "JsonDocument.h"

#include <cmath>
#include <string>

#include "ByteScan.h"

namespace TESSARIN_COMMON {

namespace {

constexpr std::size_t kMaxExcerpt = 32;  // characters of the text that a failure shows

// The reading without recursion has another code for a text that begins with no value, and the refused number has that
// of any refusal: the texts tell them as the plain reading would.
rapidjson::ParseErrorCode PlainCode(const rapidjson::ParseResult& result, std::string_view text) {
  const bool somethingThere = result.Offset() < text.size() && text[result.Offset()] != '\0';
  if (result.Code() == rapidjson::kParseErrorDocumentEmpty && somethingThere) {
    return rapidjson::kParseErrorValueInvalid;
  }
  if (result.Code() == rapidjson::kParseErrorTermination) return rapidjson::kParseErrorNumberTooBig;
  return result.Code();
}

std::string FailureText(const rapidjson::ParseResult& result, std::string_view text) {
  std::string message = "Parse json string fail. err=";
  message += rapidjson::GetParseError_En(PlainCode(result, text));
  message += ". offset=";
  if (result.Offset() < text.size()) message += text.substr(result.Offset(), kMaxExcerpt);
  return message;
}

// The library's scan of sixteen bytes at a time passes over these, which may not stand in a string.
constexpr auto kOverlooked = [](unsigned char c) { return ((c >= 0x1A) & (c < 0x20)) != 0; };

// The library's fast scan is an overload for its own type of stream; any other gets the plain one.
struct BytewiseStream : rapidjson::InsituStringStream {
  using GenericInsituStringStream::GenericInsituStringStream;
};

}  // namespace

void JsonDocument::ParseText(std::string_view text) {
  rapidjson::MemoryStream bytes(text.data(), text.size());
  rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream> stream(bytes);
  ParseFrom<rapidjson::kParseNoFlags>(stream, text);
}

void JsonDocument::ParseInPlace(char* copy, std::string_view text) {
  const char* const end = text.data() + text.size();
  if (FindByte(text.data(), end, kOverlooked) == end) {
    rapidjson::InsituStringStream stream(copy);
    ParseFrom<rapidjson::kParseInsituFlag>(stream, text);
  } else {
    BytewiseStream stream(copy);
    ParseFrom<rapidjson::kParseInsituFlag>(stream, text);
  }
}

bool JsonDocument::Double(double value) {
  return std::isfinite(value) && Base::Double(value);
}

template <unsigned kFlags, class Stream>
void JsonDocument::ParseFrom(Stream& stream, std::string_view text) {
  JsonReader reader;
  rapidjson::ParseResult result;
  auto read = [&](Base&) {
    result = reader.Parse<kFlags | rapidjson::kParseIterativeFlag>(stream, *this);
    return !result.IsError();
  };
  Populate(read);
  if (result.IsError()) throw std::runtime_error(FailureText(result, text));
}

}  // namespace TESSARIN_COMMON
