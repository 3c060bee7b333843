#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Fields.h"
#include "JsonBufferWriter.h"

namespace TESSARIN_COMMON {

// Writes JSON text without white space, in the order of the calls. Belongs to one thread. A null C string raises
// "str != 0"; nothing else fails.
class JsonWriter {
 public:
  enum Option : unsigned { kNone = 0, kSkipEmpty = 1, kEmptyAsNull = 4 };

  JsonWriter() : buffer_(nullptr, kInitialBytes), writer_(buffer_) {}

  void StartObject(const char* key = nullptr);
  void EndObject() { writer_.EndObject(); }
  void StartArray(const char* key = nullptr);
  void EndArray() { writer_.EndArray(); }

  // One value: a member under `key`, or an element if key is null. A zero or empty value can be left out or be
  // written as null.
  void Add(const char* key, std::string_view value, unsigned options = kNone);
  void Add(const char* key, const char* value, unsigned options = kNone);
  void Add(const char* key, bool value, unsigned options = kNone);
  void Add(const char* key, std::int32_t value, unsigned options = kNone);
  void Add(const char* key, std::int64_t value, unsigned options = kNone);
  void Add(const char* key, std::uint32_t value, unsigned options = kNone);
  void Add(const char* key, std::uint64_t value, unsigned options = kNone);
  void Add(const char* key, double value, unsigned options = kNone);
  // The text of a fixed array, up to its first NUL.
  template <std::size_t N>
  void AddFixed(const char* key, const char (&value)[N], unsigned options = kNone);
  void Add(const char* key, const std::string& value, unsigned options = kNone) {
    Add(key, std::string_view(value), options);
  }
  template <Record T>
  void Add(const char* key, const T& record);
  template <class T>
  void Add(const char* key, const std::vector<T>& list);

  // The text so far.
  [[nodiscard]] std::string Text() const { return {buffer_.GetString(), buffer_.GetSize()}; }

 private:
  static constexpr std::size_t kInitialBytes = 256;

  // Writes the key, and what an empty value becomes; true if the value itself is still to be written.
  bool Begin(const char* key, bool empty, unsigned options);

  JsonBuffer buffer_;
  JsonBufferWriter writer_;
};

template <std::size_t N>
void JsonWriter::AddFixed(const char* key, const char (&value)[N], unsigned options) {
  const std::string_view all(value, N);
  Add(key, all.substr(0, all.find('\0')), options);
}

template <Record T>
void JsonWriter::Add(const char* key, const T& record) {
  StartObject(key);
  ForEachField<T>([&](const auto& field) {
    using Member = std::remove_cvref_t<decltype(record.*(field.member))>;
    const Member& value = record.*(field.member);
    if constexpr (std::is_array_v<Member>) {
      AddFixed(field.name, value);
    } else if constexpr (std::is_same_v<Member, std::int64_t>) {
      if (field.narrow == Narrow::Int32OnWrite) return Add(field.name, static_cast<std::int32_t>(value));
      Add(field.name, value);
    } else if constexpr (std::is_same_v<Member, std::uint8_t>) {
      Add(field.name, value != 0);  // a boolean byte of a C interface
    } else {
      Add(field.name, value);
    }
  });
  EndObject();
}

template <class T>
void JsonWriter::Add(const char* key, const std::vector<T>& list) {
  StartArray(key);
  for (const auto& row : list) Add(nullptr, row);
  EndArray();
}

// The JSON text of one value: a record, a list of records, a number, a string.
template <class T>
[[nodiscard]] std::string JsonText(const T& value) {
  JsonWriter writer;
  writer.Add(nullptr, value);
  return writer.Text();
}

}  // namespace TESSARIN_COMMON
