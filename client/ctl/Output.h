#pragma once

#include <string>

#include "CommandLine.h"
#include "client/Session.h"

namespace ravo::ctl {

// A whole line at once: somebody may read it from a pipe, line by line.
void PrintLine(const std::string& text);

// JSON text as text without white space; as a JSON string, should it not be JSON.
[[nodiscard]] std::string Compact(const std::string& json);

// The member of an object as JSON text; "null" if there is none.
[[nodiscard]] std::string MemberText(const std::string& json, const char* name);

// One line an event: JSON for programs, which is the rule with --json and where no terminal reads along, else the time,
// the event and its arguments by their names. --text asks for the second in any case.
class EventPrinter {
 public:
  explicit EventPrinter(const CommandLine& line);
  void Print(const client::Event& event) const;

 private:
  const bool json_;
};

// The second form without the time: `USER_JOIN  uid: "ann", value: 0`. What is very long is cut.
[[nodiscard]] std::string ReadableEvent(const client::Event& event);

}  // namespace ravo::ctl
