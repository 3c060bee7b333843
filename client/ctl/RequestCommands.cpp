#include <fmt/format.h>

#include "Commands.h"
#include "Meeting.h"
#include "Output.h"
#include "Table.h"
#include "common/JsonNode.h"
#include "common/JsonWriter.h"

namespace ravo::ctl {
namespace {

using TESSARIN_COMMON::JsonNode;

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
  Table table({"STREAM", "USER", " TYPE", " FRAMES", "OWN", "ENCODINGS"});
  for (std::size_t i = 0; i < streams.Size(); ++i) {
    JsonNode& stream = streams[i];
    table.Add({Text(stream, "sid"), Text(stream, "uid"), std::to_string(Integer(stream, "streamType")),
               std::to_string(Integer(stream, "frameStatus")), Flag(stream, "isSelf"), Encodings(stream)});
  }
  fmt::print("{}", table.Text());
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

// A first request is answered when the start is over: what comes after it comes of the call.
int RunCall(Context& context) {
  const std::string until = context.line.Value("--until");
  if (!until.empty()) {
    context.Call("Connect");
    while (context.session.WaitEvent("", std::chrono::milliseconds(0))) {
    }
  }
  PrintLine(context.Call(context.Word(0), context.HasWord(1) ? context.Word(1) : "[]"));
  const EventPrinter printer(context.line);
  const auto end = Meeting::Clock::now() + context.line.Timeout();
  for (std::string key; !until.empty() && key != until;) {
    const auto event =
        context.session.WaitEvent("", std::chrono::ceil<std::chrono::milliseconds>(end - Meeting::Clock::now()));
    if (!event) throw std::runtime_error(until + " has not come");
    printer.Print(*event);
    key = event->key;
  }
  return 0;
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
