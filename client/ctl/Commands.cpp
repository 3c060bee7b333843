#include "Commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ravo::ctl {
namespace {

constexpr Command kCommands[] = {
    {"call", "METHOD [JSON-ARGUMENTS] [--until EVENT]",
     "Calls a method, in snake or Pascal case, and prints what it answers. With --until it goes on to print the "
     "events\n"
     "that come, up to the first of that key; one that does not come within --timeout is a failure.",
     1, 2, RunCall, CheckCall},
    {"watch", "[--text] [--join ROOM [--as USER] [--subscribe all|none]] [--seconds N]",
     "Prints every event until the session ends, or for N seconds: one JSON line each, readable on a terminal and "
     "with\n"
     "--text. With --join it takes part in the meeting, and subscribes to the video of all others.",
     0, 0, RunWatch, CheckWatch},
    {"status", "", "Shows the state of the server.", 0, 0, RunStatus},
    {"streams", "", "Lists the streams.", 0, 0, RunStreams},
    {"devices", "", "Lists microphones, speakers and cameras, with volumes and mutes. A star marks what is in use.", 0,
     0, RunDevices},
    {"windows", "", "Lists the desktops and windows that can be shared.", 0, 0, RunWindows},
    {"snapshot", "SID FILE.png [--join ROOM [--as USER]]", "Writes the next frame of a stream.", 2, 2, RunSnapshot,
     CheckFrames},
    {"record", "SID FILE.y4m [--frames N] [--join ROOM [--as USER]]",
     "Writes frames of a stream, 100 of them by default.", 2, 2, RunRecord, CheckFrames},
    {"attend", "ROOM USER [--subscribe all|none] [--seconds N] [--png-dir DIR]",
     "Joins a meeting, reads all its video for N seconds (5), leaves a picture a stream and a table.", 2, 2, RunAttend,
     CheckAttend},
    {"top", "[--rounds N] [--join ROOM [--as USER]] [--pids PID,PID]",
     "Shows each second, N times or until Ctrl-C, the streams with their frames and what was dropped, the server and\n"
     "other processes with their threads' load, and the requests and events of this session.",
     0, 0, RunTop, CheckTop},
    {"methods", "[WORD]", "Lists the server's methods with their arguments and replies; those that hold the word.", 0,
     1, nullptr, nullptr, RunMethods},
    {"completion", "bash", "Prints a script for the shell: source <(ravoctl completion bash)", 1, 1, nullptr,
     CheckCompletion, RunCompletion},
    {"help", "[COMMAND]", "Shows how a command is used, as COMMAND --help does.", 0, 1, nullptr, nullptr, RunHelp},
};

constexpr char kOptions[] =
    "  --join ROOM  joins the meeting first, subscribes to the stream there and leaves at the end; without\n"
    "               it the stream must have a slot already\n"
    "  --as USER    who joins, ravoctl by default\n"
    "  --timeout S  how long to wait for the server, an answer, a stream or a frame, 10 s by default\n"
    "  --json       prints JSON: what the server answers as it stands, or what would be a table\n";

}  // namespace

std::span<const Command> Commands() {
  return kCommands;
}

const Command& FindCommand(const std::string& name) {
  const auto* const command =
      std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command& c) { return c.name == name; });
  if (command == std::end(kCommands)) throw UsageError("unknown command " + name);
  return *command;
}

std::string HelpOf(const Command& command) {
  const char* const pipe = command.runAlone == nullptr ? " --pipe NAME" : "";
  const char* const blank = *command.usage == '\0' ? "" : " ";
  return fmt::format("usage: ravoctl{} {}{}{}\n{}\n\n{}", pipe, command.name, blank, command.usage, command.help,
                     kOptions);
}

void PrintUsage() {
  fmt::print(
      "usage: ravoctl --pipe NAME [--timeout S] [--json] COMMAND\n"
      "Talks to the server at the pipe NAME, as its client. The server serves one client at a time, and ends\n"
      "when that one leaves: so with the end of any of these commands, too.\n\n");
  for (const auto& command : kCommands) {
    const std::string_view help = command.help;
    fmt::print("  {} {}\n", command.name, command.usage);
    fmt::print("      {}\n", help.substr(0, help.find('\n')));
  }
  fmt::print("\n{}Exit codes: 0 done, 1 failed, 2 wrong usage.\n", kOptions);
}

int RunHelp(const CommandLine& line) {
  if (line.Words().size() < 2) {
    PrintUsage();
  } else {
    fmt::print("{}", HelpOf(FindCommand(line.Words()[1])));
  }
  return 0;
}

}  // namespace ravo::ctl
