#include <fmt/format.h>

#include <cstdio>

#include "Commands.h"
#include "common/JsonNode.h"
#include "common/JsonWriter.h"

namespace ravo::ctl {
namespace {

using TESSARIN_COMMON::JsonNode;

// Somebody may read it from a pipe, line by line.
void PrintLine(const std::string& text) {
  fmt::print("{}\n", text);
  std::fflush(stdout);
}

// JSON text as text without white space; as it is, should it not be JSON.
std::string Compact(const std::string& json) {
  rapidjson::Document document;
  if (document.Parse(json.c_str()).HasParseError()) return TESSARIN_COMMON::JsonText(json);
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

std::string Text(JsonNode& node, const char* key) {
  std::string text;
  node.Get(key, text);
  return text.empty() ? "-" : text;
}

const char* Flag(JsonNode& node, const char* key) {
  bool flag = false;
  node.Get(key, flag);
  return flag ? "yes" : "no";
}

std::int64_t Integer(JsonNode& node, const char* key) {
  std::int64_t number = 0;
  node.Get(key, number);
  return number;
}

std::string Words(JsonNode& node, const char* key) {
  std::vector<std::string> words;
  node.Get(key, words);
  return words.empty() ? "-" : fmt::format("{}", fmt::join(words, " "));
}

// "1280x720@30 640x360@15"
std::string Encodings(JsonNode& stream) {
  std::string text;
  JsonNode* const list = stream.Find("resolutions");
  for (std::size_t i = 0; list != nullptr && i < list->Size(); ++i) {
    JsonNode& encoding = (*list)[i];
    text += fmt::format("{}{}x{}@{}", i == 0 ? "" : " ", Integer(encoding, "width"), Integer(encoding, "height"),
                        Integer(encoding, "frameRate"));
  }
  return text.empty() ? "-" : text;
}

void PrintStreams(JsonNode& streams) {
  fmt::print("{:<24} {:<16} {:>4} {:>6} {:<5} {}\n", "STREAM", "USER", "TYPE", "FRAMES", "OWN", "ENCODINGS");
  for (std::size_t i = 0; i < streams.Size(); ++i) {
    JsonNode& stream = streams[i];
    fmt::print("{:<24} {:<16} {:>4} {:>6} {:<5} {}\n", Text(stream, "sid"), Text(stream, "uid"),
               Integer(stream, "streamType"), Integer(stream, "frameStatus"), Flag(stream, "isSelf"),
               Encodings(stream));
  }
}

void PrintState(JsonNode& state) {
  fmt::print("server           {}\n", Text(state, "serverName"));
  fmt::print("in a meeting     {}\n", Flag(state, "isJoinMeeting"));
  fmt::print("room             {}\n", Text(state, "roomId"));
  fmt::print("user             {}\n", Text(state, "myUid"));
  fmt::print("local video      {}\n", Flag(state, "isEnableLocalVideo"));
  fmt::print("preview          {}\n", Flag(state, "isStartPreview"));
}

void PrintSubscriptions(JsonNode& status) {
  fmt::print("subscribed       {}\n", Words(status, "subscribed"));
  fmt::print("subscribing      {}\n", Words(status, "subscribing"));
  fmt::print("waiting          {}\n", Words(status, "waitingSubscribe"));
  fmt::print("at most          {}\n", Integer(status, "maxSubscribingNumber"));
}

// Calls print(child) if the answer has the child.
void PrintPart(JsonNode& root, const char* key, void (*print)(JsonNode&)) {
  if (JsonNode* const part = root.Find(key)) print(*part);
}

}  // namespace

void CheckCall(const CommandLine& line) {
  if (line.Words().size() < 3) return;
  try {
    const JsonNode arguments(line.Words()[2]);
  } catch (const std::runtime_error& failure) {
    throw UsageError(std::string("the arguments are no JSON: ") + failure.what());
  }
}

int RunCall(Context& context) {
  PrintLine(context.Call(context.Word(0), context.HasWord(1) ? context.Word(1) : "[]"));
  return 0;
}

int RunWatch(Context& context) {
  for (;;) {
    const auto event = context.session.WaitEvent("", std::chrono::hours(1));
    if (event) {
      PrintLine("{\"event\":" + TESSARIN_COMMON::JsonText(event->key) + ",\"content\":" + Compact(event->content) +
                "}");
    } else if (context.session.WaitClosed(std::chrono::milliseconds(0))) {
      return 0;
    }
  }
}

int RunStatus(Context& context) {
  const std::string content = context.Call("GetInitInfo");
  if (context.line.Json()) {
    PrintLine(content);
    return 0;
  }
  JsonNode root(content);
  PrintPart(root, "serverState", PrintState);
  PrintPart(root, "subscribeStatus", PrintSubscriptions);
  fmt::print("\n");
  PrintPart(root, "streamInfo", PrintStreams);
  return 0;
}

int RunStreams(Context& context) {
  const std::string content = context.Call("FetchAllStreamInfo");
  if (context.line.Json()) {
    PrintLine(content);
    return 0;
  }
  JsonNode root(content);
  PrintStreams(root);
  return 0;
}

}  // namespace ravo::ctl
