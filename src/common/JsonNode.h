#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Fields.h"
#include "JsonDocument.h"

namespace TESSARIN_COMMON {

// One position in a JSON document, for reading. The root owns the document; children are owned by their parents, point
// into the document and must not outlive the root. Belongs to one thread.
//
// Every failure is a std::runtime_error. One that concerns a key ends in the place, as in
// "type unmatch[proxyConfigs.[1].proxyPort]".
class JsonNode {
 public:
  enum Option : unsigned { kNone = 0, kMandatory = 2 };

  // Parses, and fails as JsonDocument does: "Parse json string fail. err=...".
  explicit JsonNode(std::string_view text);
  // Stands on a value that somebody else owns and keeps. Null makes a null node, in which every key is absent.
  explicit JsonNode(const JsonValue* root) : value_(root) {}
  JsonNode(const JsonNode&) = delete;
  JsonNode& operator=(const JsonNode&) = delete;

  // Reads the member `key`, or the node's own value if key is empty. True if a value was read. An absent key, one
  // whose value is null, and any key of a null node, returns false and leaves `out` alone, or fails with "mandatory key
  // not found".
  bool Get(std::string_view key, std::string& out, unsigned options = kNone) const;
  bool Get(std::string_view key, bool& out, unsigned options = kNone) const;  // accepts an integer, 0 being false
  bool Get(std::string_view key, std::int32_t& out, unsigned options = kNone) const;
  bool Get(std::string_view key, std::int64_t& out, unsigned options = kNone) const;
  bool Get(std::string_view key, std::uint32_t& out, unsigned options = kNone) const;
  bool Get(std::string_view key, std::uint64_t& out, unsigned options = kNone) const;
  bool Get(std::string_view key, double& out, unsigned options = kNone) const;

  // A nested record: its fields are read from the child in wire order; what is absent keeps its value.
  template <Record T>
  bool Get(std::string_view key, T& out, unsigned options = kNone);
  // A list: resized to the array's size and read row by row. A value that is no array empties it.
  template <class T>
  bool Get(std::string_view key, std::vector<T>& out, unsigned options = kNone);

  // A child by key; null if it is absent. Fails with "not object" if this node is none.
  JsonNode* Find(std::string_view key);
  // A child by index. Fails with "not array" or "Out of index".
  JsonNode& operator[](std::size_t index);
  // The length of an array; 0 for anything else.
  [[nodiscard]] std::size_t Size() const;

 private:
  JsonNode(const JsonNode* parent, std::string_view key, int index, const JsonValue* value)
      : parent_(parent), key_(key), index_(index), value_(value) {}

  [[nodiscard]] const JsonValue* Lookup(std::string_view key, unsigned options) const;
  [[nodiscard]] const JsonValue* Member(std::string_view key) const;
  template <class T, class Accepts, class Take>
  bool GetScalar(std::string_view key, T& out, unsigned options, const char* mismatch, Accepts accepts,
                 Take take) const;
  JsonNode* AddChild(std::string_view key, int index, const JsonValue* value);
  [[noreturn]] void Fail(std::string_view message, std::string_view key) const;
  [[nodiscard]] std::string Path() const;

  const JsonNode* parent_ = nullptr;
  std::string key_;  // empty for the root and for array rows
  int index_ = -1;   // -1 if no array row
  std::vector<std::unique_ptr<JsonNode>> children_;
  std::unique_ptr<JsonDocument> document_;  // the root's alone
  const JsonValue* value_ = nullptr;
};

// Reads the fields of a record from the node's own object.
template <Record T>
void ReadRecord(JsonNode& node, T& out) {
  ForEachField<T>([&](const auto& field) { node.Get(field.name, out.*(field.member)); });
}

template <Record T>
bool JsonNode::Get(std::string_view key, T& out, unsigned options) {
  JsonNode* child = key.empty() ? this : Find(key);
  if (child == nullptr) {
    if ((options & kMandatory) != 0) Fail("mandatory key not found", key);
    return false;
  }
  ReadRecord(*child, out);
  return true;
}

template <class T>
bool JsonNode::Get(std::string_view key, std::vector<T>& out, unsigned options) {
  const JsonValue* list = Lookup(key, options);
  if (list == nullptr) return false;
  JsonNode* child = key.empty() ? this : AddChild(key, -1, list);
  out.resize(child->Size());
  for (std::size_t i = 0; i < out.size(); ++i) (*child)[i].Get("", out[i]);
  return true;
}

}  // namespace TESSARIN_COMMON
