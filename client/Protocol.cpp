#include "Protocol.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ravo::client {
namespace {

constexpr std::size_t kCells = 4;
using Cells = std::array<std::string, kCells>;

void Erase(std::string& text, std::string_view what) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at)) text.erase(at, what.size());
}

// The text without marks; of a link its words.
std::string Plain(std::string_view cell) {
  std::string text(cell);
  for (auto at = text.find("]("); at != std::string::npos; at = text.find("](", at)) {
    text.erase(at, text.find(')', at) + 1 - at);
    text.erase(text.rfind('[', at), 1);
  }
  for (const char* mark : {"`", "**", ", see below"}) Erase(text, mark);
  return text == "–" ? "" : text;
}

// "| `Name` | a | b | c |"; nothing for lines of any other form.
std::optional<Cells> CellsOf(std::string_view line) {
  constexpr std::string_view kEnd = " |";
  if (!line.starts_with("| `") || !line.ends_with(kEnd)) return std::nullopt;
  line.remove_prefix(2);
  Cells cells;
  for (auto& cell : cells) {
    const auto end = line.find(kEnd);
    if (end == std::string_view::npos) return std::nullopt;
    cell = Plain(line.substr(0, end));
    line.remove_prefix(std::min(line.size(), end + kEnd.size() + 1));
  }
  return line.empty() ? std::optional(cells) : std::nullopt;
}

struct Tables {
  std::vector<MethodInfo> methods;
  std::vector<EventInfo> events;
};

Tables ReadTables(std::string_view text) {
  Tables tables;
  bool areEvents = false;
  std::string group;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(text.size(), end + 1));
    if (line.starts_with("## ")) areEvents = line == "## Events";
    if (line.starts_with("### ")) group = line.substr(4);
    const auto cells = CellsOf(line);
    if (!cells) continue;
    const auto& [name, second, third, fourth] = *cells;
    if (areEvents) {
      tables.events.push_back({group, name, second, third});
    } else {
      tables.methods.push_back({group, name, second, third});
    }
  }
  return tables;
}

const Tables& TheTables() {
  static const auto* const tables = new Tables(ReadTables(kProtocolText));
  return *tables;
}

}  // namespace

const std::vector<MethodInfo>& Methods() {
  return TheTables().methods;
}

const std::vector<EventInfo>& Events() {
  return TheTables().events;
}

}  // namespace ravo::client
