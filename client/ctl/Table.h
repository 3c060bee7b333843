#pragma once

#include <string>
#include <vector>

namespace ravo::ctl {

// Text in columns that are as wide as their widest cell, two blanks apart. UTF-8; a character counts one column.
class Table {
 public:
  using Row = std::vector<std::string>;

  // Columns whose name begins with a blank stand to the right, as numbers do.
  explicit Table(Row names);
  // As many cells as there are columns.
  void Add(Row row) { rows_.push_back(std::move(row)); }
  [[nodiscard]] std::string Text() const;

 private:
  std::vector<bool> right_;
  std::vector<Row> rows_;  // the names first
};

}  // namespace ravo::ctl
