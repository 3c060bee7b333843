#include "CommandLine.h"

#include <charconv>

namespace ravo::ctl {
namespace {

const std::map<std::string, bool> kOptionTakesValue = {
    {"--pipe", true},      {"--timeout", true}, {"--json", false},   {"--help", false}, {"--frames", true},
    {"--subscribe", true}, {"--seconds", true}, {"--png-dir", true}, {"--join", true},  {"--as", true},
    {"--until", true},     {"--text", false},   {"--rounds", true},  {"--pids", true}};

}  // namespace

CommandLine::CommandLine(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (!argument.starts_with("--")) {
      words_.push_back(argument);
      continue;
    }
    const auto known = kOptionTakesValue.find(argument);
    if (known == kOptionTakesValue.end()) throw UsageError("unknown option " + argument);
    if (known->second && i + 1 == arguments.size()) throw UsageError("the option " + argument + " lacks its value");
    options_[argument] = known->second ? arguments[++i] : "";
  }
}

std::vector<std::string> CommandLine::OptionsWithValue() {
  std::vector<std::string> options;
  for (const auto& [option, takesValue] : kOptionTakesValue) {
    if (takesValue) options.push_back(option);
  }
  return options;
}

std::string CommandLine::Value(const std::string& option, const std::string& otherwise) const {
  const auto found = options_.find(option);
  return found == options_.end() ? otherwise : found->second;
}

int CommandLine::Number(const std::string& option, int otherwise, int least) const {
  if (!Has(option)) return otherwise;
  const std::string text = Value(option);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least) {
    throw UsageError(option + " takes a whole number from " + std::to_string(least) + " on, not " + text);
  }
  return number;
}

}  // namespace ravo::ctl
