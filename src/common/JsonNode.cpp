#include "JsonNode.h"

namespace TESSARIN_COMMON {

namespace {
constexpr const char* kTypeUnmatch = "type unmatch";
}  // namespace

JsonNode::JsonNode(std::string_view text) : document_(std::make_unique<JsonDocument>()) {
  document_->ParseText(text);
  value_ = document_.get();
}

bool JsonNode::Get(std::string_view key, std::string& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsString(); },
      [](const auto& v) { return std::string(v.GetString(), v.GetStringLength()); });
}

bool JsonNode::Get(std::string_view key, bool& out, unsigned options) const {
  return GetScalar(
      key, out, options, "wish bool, but not bool or int", [](const auto& v) { return v.IsBool() || v.IsInt64(); },
      [](const auto& v) { return v.IsBool() ? v.GetBool() : v.GetInt64() != 0; });
}

bool JsonNode::Get(std::string_view key, std::int32_t& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsInt(); },
      [](const auto& v) { return v.GetInt(); });
}

bool JsonNode::Get(std::string_view key, std::int64_t& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsInt64(); },
      [](const auto& v) { return v.GetInt64(); });
}

bool JsonNode::Get(std::string_view key, std::uint32_t& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsUint(); },
      [](const auto& v) { return v.GetUint(); });
}

bool JsonNode::Get(std::string_view key, std::uint64_t& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsUint64(); },
      [](const auto& v) { return v.GetUint64(); });
}

bool JsonNode::Get(std::string_view key, double& out, unsigned options) const {
  return GetScalar(
      key, out, options, kTypeUnmatch, [](const auto& v) { return v.IsNumber(); },
      [](const auto& v) { return v.GetDouble(); });
}

template <class T, class Accepts, class Take>
bool JsonNode::GetScalar(std::string_view key, T& out, unsigned options, const char* mismatch, Accepts accepts,
                         Take take) const {
  const JsonValue* found = Lookup(key, options);
  if (found == nullptr) return false;
  if (!accepts(*found)) Fail(mismatch, key);
  out = take(*found);
  return true;
}

JsonNode* JsonNode::Find(std::string_view key) {
  if (value_ != nullptr && !value_->IsObject()) Fail("not object", key);
  const JsonValue* found = Member(key);
  return found != nullptr ? AddChild(key, -1, found) : nullptr;
}

JsonNode& JsonNode::operator[](std::size_t index) {
  if (value_ == nullptr || !value_->IsArray()) Fail("not array", "");
  if (index >= Size()) Fail("Out of index", "");
  return *AddChild("", static_cast<int>(index), &(*value_)[static_cast<rapidjson::SizeType>(index)]);
}

std::size_t JsonNode::Size() const {
  return value_ != nullptr && value_->IsArray() ? value_->Size() : 0;
}

// Null for an absent value and for a JSON null, which are not told apart.
const JsonValue* JsonNode::Lookup(std::string_view key, unsigned options) const {
  const JsonValue* found = nullptr;
  try {
    found = key.empty() ? value_ : Member(key);
  } catch (const std::runtime_error& error) {
    Fail(error.what(), key);  // a member looked up in what is no object: "IsObject()"
  }
  if (found != nullptr && !found->IsNull()) return found;
  if ((options & kMandatory) != 0) Fail("mandatory key not found", key);
  return nullptr;
}

const JsonValue* JsonNode::Member(std::string_view key) const {
  if (value_ == nullptr) return nullptr;
  const auto name = rapidjson::StringRef(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  const auto member = value_->FindMember(JsonValue(name));
  return member == value_->MemberEnd() || member->value.IsNull() ? nullptr : &member->value;
}

JsonNode* JsonNode::AddChild(std::string_view key, int index, const JsonValue* value) {
  children_.push_back(std::unique_ptr<JsonNode>(new JsonNode(this, key, index, value)));
  return children_.back().get();
}

void JsonNode::Fail(std::string_view message, std::string_view key) const {
  std::string place = Path();
  if (!key.empty()) {
    if (!place.empty()) place += '.';
    place += key;
  }
  throw std::runtime_error(std::string(message) + '[' + place + ']');
}

std::string JsonNode::Path() const {
  if (parent_ == nullptr) return "";
  std::string path = parent_->Path();
  if (!path.empty()) path += '.';
  return path + (index_ < 0 ? key_ : '[' + std::to_string(index_) + ']');
}

}  // namespace TESSARIN_COMMON
