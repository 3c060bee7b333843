#include "JsonWriter.h"

#include <cmath>

namespace TESSARIN_COMMON {

void JsonWriter::StartObject(const char* key) {
  if (key != nullptr) writer_.Key(key);
  writer_.StartObject();
}

void JsonWriter::StartArray(const char* key) {
  if (key != nullptr) writer_.Key(key);
  writer_.StartArray();
}

void JsonWriter::Add(const char* key, std::string_view value, unsigned options) {
  if (!Begin(key, value.empty(), options)) return;
  writer_.String(value.empty() ? "" : value.data(), value.size());
}

void JsonWriter::Add(const char* key, const char* value, unsigned options) {
  if (value != nullptr) return Add(key, std::string_view(value), options);
  if (Begin(key, true, options)) throw std::runtime_error("str != 0");
}

void JsonWriter::Add(const char* key, bool value, unsigned options) {
  if (Begin(key, !value, options)) writer_.Bool(value);
}

void JsonWriter::Add(const char* key, std::int32_t value, unsigned options) {
  if (Begin(key, value == 0, options)) writer_.Int(value);
}

void JsonWriter::Add(const char* key, std::int64_t value, unsigned options) {
  if (Begin(key, value == 0, options)) writer_.Int64(value);
}

void JsonWriter::Add(const char* key, std::uint32_t value, unsigned options) {
  if (Begin(key, value == 0, options)) writer_.Uint(value);
}

void JsonWriter::Add(const char* key, std::uint64_t value, unsigned options) {
  if (Begin(key, value == 0, options)) writer_.Uint64(value);
}

void JsonWriter::Add(const char* key, double value, unsigned options) {
  if (!Begin(key, value == 0.0, options)) return;
  // JSON has no number for these, and leaving the value out would break the text.
  if (std::isfinite(value)) {
    writer_.Double(value);
  } else {
    writer_.Null();
  }
}

bool JsonWriter::Begin(const char* key, bool empty, unsigned options) {
  if (empty && (options & kSkipEmpty) != 0) return false;
  if (key != nullptr) writer_.Key(key);
  if (!empty || (options & kEmptyAsNull) == 0) return true;
  writer_.Null();
  return false;
}

}  // namespace TESSARIN_COMMON
