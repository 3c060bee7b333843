#include "IPCData.h"

#include <utility>

#include "common/JsonBufferWriter.h"

namespace TESSARIN_COMMON {
namespace {

constexpr const char* kHeader = "method_name";  // the key of the whole header, not of a method's name
constexpr const char* kTaskId = "taskId";
constexpr const char* kContent = "content";

// The header's texts, in wire order; the task id follows them.
struct HeaderText {
  const char* key;
  std::string IPCData::*member;
};
constexpr HeaderText kHeaderTexts[] = {{"module_name", &IPCData::module_name},
                                       {"content_type", &IPCData::content_type},
                                       {"message_type", &IPCData::message_type},
                                       {"message_key", &IPCData::message_key},
                                       {"context_id", &IPCData::context_id}};

// Room for the text with its keys, where few characters need an escape beyond the quotes of nested JSON.
std::size_t ExpectedBytes(const IPCData& data) {
  std::size_t bytes = 256 + data.content.size() + data.content.size() / 4;
  for (const auto& [key, member] : kHeaderTexts) bytes += (data.*member).size();
  return bytes;
}

void WriteText(JsonBufferWriter& writer, const char* key, const std::string& text) {
  writer.Key(key);
  writer.String(text.data(), text.size());
}

void ReadText(const JsonValue& object, const char* key, std::string& out) {
  const auto found = object.FindMember(key);
  if (found == object.MemberEnd()) return;
  const char* const text = found->value.GetString();
  out.assign(text, found->value.GetStringLength());
}

void ReadHeader(const JsonValue& header, IPCData& data) {
  for (const auto& [key, member] : kHeaderTexts) ReadText(header, key, data.*member);
  const auto taskId = header.FindMember(kTaskId);
  if (taskId != header.MemberEnd()) data.taskId = taskId->value.GetInt64();
}

bool IsLower(char c) {
  return c >= 'a' && c <= 'z';
}
bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}
char Upper(char c) {
  return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string Serialize(const IPCData& data) {
  JsonBuffer buffer(nullptr, ExpectedBytes(data));
  JsonBufferWriter writer(buffer);
  writer.StartObject();
  writer.Key(kHeader);
  writer.StartObject();
  for (const auto& [key, member] : kHeaderTexts) WriteText(writer, key, data.*member);
  writer.Key(kTaskId);
  writer.Int64(data.taskId);
  writer.EndObject();
  WriteText(writer, kContent, data.content);
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

void ParseIpcData(std::string_view text, IPCData& data) {
  ContentView envelope;
  envelope.Parse(text);
  const JsonValue& root = envelope.Value();
  if (!root.IsObject()) throw std::runtime_error("not object");
  const auto header = root.FindMember(kHeader);
  if (header != root.MemberEnd()) ReadHeader(header->value, data);
  ReadText(root, kContent, data.content);
}

std::string MessageKeyToMethodName(std::string_view key) {
  std::string name;
  name.reserve(key.size());
  bool raise = true;  // the first character is raised, and stays even if it is the separator
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (key[i] == '_' && i > 0) {
      raise = true;
      continue;
    }
    name += raise ? Upper(key[i]) : key[i];
    raise = false;
  }
  return name;
}

std::string EventNameToMessageKey(std::string_view name) {
  std::string key;
  key.reserve(name.size() + 8);
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (i > 0 && IsUpper(name[i]) && IsLower(name[i - 1])) key += '_';
    key += Upper(name[i]);
  }
  return key;
}

IPCData MakeEvent(std::string_view eventName, std::string content) {
  return MakeSessionEvent(EventNameToMessageKey(eventName), std::move(content));
}

IPCData MakeSessionEvent(std::string_view key, std::string content) {
  IPCData data;
  data.content_type = kContentJson;
  data.message_type = kMessageEvent;
  data.message_key = key;
  data.content = std::move(content);
  return data;
}

}  // namespace TESSARIN_COMMON
