#include <fmt/format.h>

#include <cctype>
#include <string>
#include <vector>

#include "Commands.h"
#include "Output.h"
#include "Table.h"
#include "client/Protocol.h"
#include "common/JsonWriter.h"

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<ravo::client::MethodInfo> =
    Fields(Field{"group", &ravo::client::MethodInfo::group}, Field{"name", &ravo::client::MethodInfo::name},
           Field{"arguments", &ravo::client::MethodInfo::arguments}, Field{"reply", &ravo::client::MethodInfo::reply});

}  // namespace TESSARIN_COMMON

namespace ravo::ctl {
namespace {

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::vector<client::MethodInfo> MethodsWith(const std::string& word) {
  std::vector<client::MethodInfo> found;
  for (const auto& method : client::Methods()) {
    if (Lower(method.name).find(Lower(word)) != std::string::npos) found.push_back(method);
  }
  return found;
}

// The options that a command's usage names.
std::string OptionsOf(const Command& command) {
  std::string options;
  const std::string usage = command.usage;
  for (auto at = usage.find("--"); at != std::string::npos; at = usage.find("--", at + 2)) {
    options += ' ' + usage.substr(at, usage.find_first_of(" ]", at) - at);
  }
  return options;
}

std::string CommandNames() {
  std::string names;
  for (const auto& command : Commands()) names += fmt::format(" {}", command.name);
  return names;
}

std::string MethodNames() {
  std::string names;
  for (const auto& method : client::Methods()) names += ' ' + method.name;
  return names;
}

// What may follow each command, as branches of a case.
std::string Branches() {
  std::string text;
  for (const auto& command : Commands()) {
    std::string words = OptionsOf(command);
    if (std::string_view(command.name) == "completion") words += " bash";
    if (std::string_view(command.name) == "help") words += CommandNames();
    text += fmt::format("    {}) words+='{}' ;;\n", command.name, words);
  }
  return text;
}

// %-words are replaced.
constexpr char kBash[] = R"(# Completion of ravoctl for bash.
_ravoctl() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command= i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      %valued) ((++i)) ;;
      -*) ;;
      *) command=${COMP_WORDS[i]}; break ;;
    esac
  done
  case $before in
    --subscribe) COMPREPLY=($(compgen -W 'all none' -- "$word")); return ;;
    %valued) COMPREPLY=(); return ;;
  esac
  local words='--pipe --timeout --json --help'
  case $command in
    '') words+='%commands' ;;
%branches  esac
  [ "$command" = call ] && [ "$before" = call ] && words='%methods'
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _ravoctl ravoctl)";

std::string Replaced(std::string text, const std::string& word, const std::string& by) {
  for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
    text.replace(at, word.size(), by);
  }
  return text;
}

}  // namespace

int RunMethods(const CommandLine& line) {
  const auto methods = MethodsWith(line.Words().size() > 1 ? line.Words()[1] : "");
  if (line.Json()) {
    PrintLine(TESSARIN_COMMON::JsonText(methods));
    return 0;
  }
  Table table({"METHOD", "REPLY", "ARGUMENTS"});
  for (const auto& method : methods) table.Add({method.name, method.reply, method.arguments});
  fmt::print("{}", table.Text());
  return 0;
}

void CheckCompletion(const CommandLine& line) {
  if (line.Words()[1] != "bash") throw UsageError("there is no completion for " + line.Words()[1]);
}

int RunCompletion(const CommandLine&) {
  std::string script = Replaced(kBash, "%valued", fmt::format("{}", fmt::join(CommandLine::OptionsWithValue(), " | ")));
  script = Replaced(script, "%commands", CommandNames());
  script = Replaced(script, "%branches", Branches());
  PrintLine(Replaced(script, "%methods", MethodNames()));
  return 0;
}

}  // namespace ravo::ctl
