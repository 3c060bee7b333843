#pragma once

#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace ravo::ctl {

// Wrong usage, with what is wrong. Everything else that fails is another std::exception.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The words of the command line, sorted. Options may stand anywhere.
class CommandLine {
 public:
  // Fails with a UsageError for an option that is not known or lacks its value.
  explicit CommandLine(const std::vector<std::string>& arguments);

  [[nodiscard]] const std::vector<std::string>& Words() const { return words_; }
  [[nodiscard]] bool Has(const std::string& option) const { return options_.contains(option); }
  [[nodiscard]] std::string Value(const std::string& option, const std::string& otherwise = "") const;
  // A whole number from `least` on; anything else is a UsageError.
  [[nodiscard]] int Number(const std::string& option, int otherwise, int least) const;
  [[nodiscard]] std::chrono::seconds Timeout() const { return std::chrono::seconds(Number("--timeout", 10, 0)); }
  // Of all commands.
  [[nodiscard]] static std::vector<std::string> OptionsWithValue();
  [[nodiscard]] bool Json() const { return Has("--json"); }

 private:
  std::vector<std::string> words_;
  std::map<std::string, std::string> options_;
};

}  // namespace ravo::ctl
