#include "Output.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "Terminal.h"
#include "client/Protocol.h"
#include "common/JsonWriter.h"
#include "common/RapidJson.h"

namespace ravo::ctl {
namespace {

constexpr std::size_t kLongest = 400;

std::string TextOf(const rapidjson::Value& value) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  value.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

// "uid: string, value: number" gives the names in their order.
std::vector<std::string> NamesOf(const std::string& key) {
  const auto& events = client::Events();
  const auto found = std::find_if(events.begin(), events.end(), [&](const auto& event) { return event.key == key; });
  std::vector<std::string> names;
  if (found == events.end()) return names;
  const std::string& payload = found->payload;
  for (std::size_t at = 0; at < payload.size();) {
    const auto end = std::min(payload.find(", ", at), payload.size());
    const std::string argument = payload.substr(at, end - at);
    const auto colon = argument.find(':');
    if (colon != std::string::npos) names.push_back(argument.substr(0, colon));
    at = end + 2;
  }
  return names;
}

std::string ArgumentsText(const client::Event& event) {
  rapidjson::Document content;
  if (content.Parse(event.content.c_str()).HasParseError()) return event.content;
  if (!content.IsArray()) return TextOf(content);
  const auto names = NamesOf(event.key);
  std::string text;
  for (rapidjson::SizeType i = 0; i < content.Size(); ++i) {
    text += i == 0 ? "" : ", ";
    if (names.size() == content.Size()) text += names[i] + ": ";
    text += TextOf(content[i]);
  }
  return text;
}

}  // namespace

void PrintLine(const std::string& text) {
  fmt::print("{}\n", text);
  std::fflush(stdout);
}

std::string Compact(const std::string& json) {
  rapidjson::Document document;
  if (document.Parse(json.c_str()).HasParseError()) return TESSARIN_COMMON::JsonText(json);
  return TextOf(document);
}

std::string MemberText(const std::string& json, const char* name) {
  rapidjson::Document document;
  if (document.Parse(json.c_str()).HasParseError() || !document.IsObject()) return "null";
  const rapidjson::Value& object = document;
  const auto member = object.FindMember(name);
  return member == object.MemberEnd() ? "null" : TextOf(member->value);
}

std::string ReadableEvent(const client::Event& event) {
  std::string arguments = ArgumentsText(event);
  if (arguments.size() > kLongest) {
    arguments = fmt::format("{}... ({} bytes)", arguments.substr(0, kLongest), arguments.size());
  }
  return arguments.empty() ? event.key : event.key + "  " + arguments;
}

EventPrinter::EventPrinter(const CommandLine& line)
    : json_(line.Json() || (!line.Has("--text") && !OutputIsTerminal())) {}

void EventPrinter::Print(const client::Event& event) const {
  if (json_) {
    PrintLine("{\"event\":" + TESSARIN_COMMON::JsonText(event.key) + ",\"content\":" + Compact(event.content) + "}");
    return;
  }
  const auto now = std::chrono::system_clock::now();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  PrintLine(fmt::format("{:%H:%M:%S}.{:03}  {}", fmt::localtime(std::chrono::system_clock::to_time_t(now)), ms,
                        ReadableEvent(event)));
}

}  // namespace ravo::ctl
