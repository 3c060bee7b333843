#include "Contract.h"

#include <algorithm>
#include <fstream>

#include "ServerProcess.h"

namespace integration {
namespace {

// The rows below all table heads that begin with this cell, cell by cell.
std::vector<std::vector<std::string>> RowsOf(const std::string& head) {
  std::ifstream file(DOCS_FOLDER "/protocol.md");
  std::vector<std::vector<std::string>> rows;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("| " + head + " |")) inside = true;
    if (!line.starts_with('|')) inside = false;
    if (inside && line.starts_with("| `")) rows.push_back(Split(line.substr(2, line.size() - 4), " | "));
  }
  return rows;
}

// The words between backticks.
std::vector<std::string> Names(const std::string& cell) {
  std::vector<std::string> names;
  const auto pieces = Split(" " + cell, "`");
  for (std::size_t i = 1; i < pieces.size(); i += 2) names.push_back(pieces[i]);
  return names;
}

// "name: type, name: type, a remark".
std::string LettersOf(const std::string& cell) {
  if (cell == "not read") return "x";
  if (cell.starts_with("the content is ")) return "r";
  std::string letters;
  for (const auto& argument : Split(cell, ", ")) {
    const auto colon = argument.find(": ");
    if (colon == std::string::npos) continue;
    const std::string type = argument.substr(colon + 2);
    const bool isPlain = type == "string" || type == "int" || type == "bool" || type == "float" || type == "number";
    letters += isPlain ? type[0] : type == "not read" ? 'x' : type[0] == '[' ? 'l' : 'r';
  }
  return letters;
}

std::string ReplyOf(const std::string& cell) {
  const std::string first = Split(Split(cell, ",")[0], ";")[0];
  if (first == "**never**") return "never";
  if (first.starts_with("always ")) return '=' + first.substr(7);
  return Replaced(first, "`", "");
}

}  // namespace

std::vector<Method> DocumentedMethods() {
  std::vector<Method> methods;
  for (const auto& row : RowsOf("Method")) {
    if (row.size() != 4) continue;  // the chains
    methods.push_back({Names(row[0])[0], Replaced(LettersOf(row[1]), "l", "r"), ReplyOf(row[2]), Names(row[3])});
  }
  return methods;
}

std::vector<EventPromise> DocumentedEvents() {
  std::vector<EventPromise> events;
  for (const auto& row : RowsOf("Event")) {
    events.push_back({Names(row[0])[0], Names(row[1])[0], LettersOf(row[2]), Names(row[3])});
  }
  return events;
}

std::vector<Record> DocumentedRecords() {
  std::vector<Record> records;
  for (const auto& row : RowsOf("Record")) {
    Record record{Names(row[0])[0], {}};
    for (const auto& member : Split(row[1], ", ")) {  // `uid` string, `devices` [`DeviceInfo`]
      const std::string name = Names(member)[0];
      record.members.emplace_back(name, member.substr(name.size() + 3));
    }
    records.push_back(std::move(record));
  }
  return records;
}

std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> pieces;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    pieces.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  return pieces;
}

}  // namespace integration
