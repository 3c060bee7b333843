#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ravo::client {

// What the server offers, as docs/protocol.md has it: in its order, its words and without its marks.
struct MethodInfo {
  std::string group;      // "Meeting"
  std::string name;       // in Pascal case
  std::string arguments;  // "deviceType: int, volume: int"; "none", or "not read"
  std::string reply;      // "null", "number", "[DeviceInfo]"; "never" if the server does not answer
};

struct EventInfo {
  std::string group;
  std::string name;
  std::string key;      // as it comes
  std::string payload;  // "uid: string, value: number"; empty for none
};

// Read once, on first use. Any thread may ask.
[[nodiscard]] const std::vector<MethodInfo>& Methods();
[[nodiscard]] const std::vector<EventInfo>& Events();

// The part of the description that holds the tables, as Markdown.
extern const char* const kProtocolText;

}  // namespace ravo::client
