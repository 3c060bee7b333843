#pragma once

#include <string>
#include <vector>

namespace support {

struct LogLine {
  std::string module;
  int level = 0;
  std::string text;
};

// Unit tests are linked with a log library that keeps all lines of the process. A capture sees those that are written
// while it lives; any thread may write.
class LogCapture {
 public:
  LogCapture();

  [[nodiscard]] std::vector<LogLine> Lines() const;
  [[nodiscard]] std::vector<std::string> Texts() const;
  [[nodiscard]] bool Has(const std::string& text) const;
  [[nodiscard]] int Count(const std::string& text) const;
  // Waits until a line with this text has come; false after the bound.
  [[nodiscard]] bool WaitFor(const std::string& text) const;

 private:
  std::size_t first_;
};

}  // namespace support
