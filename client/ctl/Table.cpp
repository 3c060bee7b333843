#include "Table.h"

#include <algorithm>

namespace ravo::ctl {
namespace {

std::size_t Width(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

Table::Table(Row names) {
  for (auto& name : names) {
    right_.push_back(name.starts_with(' '));
    if (right_.back()) name.erase(0, 1);
  }
  rows_.push_back(std::move(names));
}

std::string Table::Text() const {
  std::vector<std::size_t> widths(right_.size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
  }
  std::string text;
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string blanks(widths[i] - Width(row[i]), ' ');
      text += i == 0 ? "" : "  ";
      text += right_[i] ? blanks + row[i] : row[i] + blanks;
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

}  // namespace ravo::ctl
