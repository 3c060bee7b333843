#pragma once

#include <string>
#include <utility>
#include <vector>

// What docs/protocol.md promises to clients, as its tables have it. ContractTest and EventTest hold a running server
// against it, DocsTest the tables in the code.
namespace integration {

struct Method {
  std::string name;
  // A letter each: s string, i int, b bool, f float, r record or list, x not read.
  std::string arguments;
  // null, number, int, bool, string, never, a record, [a list]; "=" and what it always is.
  std::string reply;
  std::vector<std::string> entries;  // of the engine
};

struct EventPromise {
  std::string name;
  std::string key;
  std::string payload;               // a letter each, as above; n number, l list
  std::vector<std::string> sources;  // callbacks of the engine, and methods
};

struct Record {
  std::string name;
  std::vector<std::pair<std::string, std::string>> members;  // names and types
};

[[nodiscard]] std::vector<Method> DocumentedMethods();
[[nodiscard]] std::vector<EventPromise> DocumentedEvents();
[[nodiscard]] std::vector<Record> DocumentedRecords();

// The pieces of a text between separators; none of an empty text.
[[nodiscard]] std::vector<std::string> Split(const std::string& text, const std::string& separator);

}  // namespace integration
