// ravoctl: talks to a running server from the command line, in the place of the client application.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "Commands.h"
#include "host/Program.h"

namespace ravo::ctl {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr Command kCommands[] = {
    {"call", "METHOD [JSON-ARGUMENTS]", "calls a method, in snake or Pascal case, and prints what it answers", 1, 2,
     RunCall, CheckCall},
    {"watch", "", "prints every event, one JSON line each, until the session ends", 0, 0, RunWatch},
    {"status", "", "shows the state of the server", 0, 0, RunStatus},
    {"streams", "", "lists the streams", 0, 0, RunStreams},
    {"snapshot", "SID FILE.png [--join ROOM [--as USER]]", "writes the next frame of a stream", 2, 2, RunSnapshot,
     CheckFrames},
    {"record", "SID FILE.y4m [--frames N] [--join ROOM [--as USER]]",
     "writes frames of a stream, 100 of them by default", 2, 2, RunRecord, CheckFrames},
    {"attend", "ROOM USER [--subscribe all|none] [--seconds N] [--png-dir DIR]",
     "joins a meeting, reads all its video for N seconds (5), leaves a picture a stream and a table", 2, 2, RunAttend,
     CheckAttend},
};

void PrintUsage(std::FILE* file) {
  fmt::print(file,
             "usage: ravoctl --pipe NAME [--timeout S] [--json] COMMAND\n"
             "Talks to the server at the pipe NAME, as its client. The server serves one client at a time, and ends\n"
             "when that one leaves: so with the end of any of these commands, too.\n\n");
  for (const auto& command : kCommands) {
    fmt::print(file, "  {} {}\n      {}\n", command.name, command.usage, command.help);
  }
  fmt::print(file,
             "\n  --join ROOM  joins the meeting first, subscribes to the stream there and leaves at the end; without\n"
             "               it the stream must have a slot already\n"
             "  --as USER    who joins, ravoctl by default\n"
             "  --timeout S  how long to wait for the server, an answer, a stream or a frame, 10 s by default\n"
             "  --json       prints what the server answers as it stands\n"
             "Exit codes: 0 done, 1 failed, 2 wrong usage.\n");
}

const Command& FindCommand(const CommandLine& line) {
  if (line.Words().empty()) throw UsageError("no command");
  const std::string& name = line.Words().front();
  const auto* const command =
      std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command& c) { return c.name == name; });
  if (command == std::end(kCommands)) throw UsageError("unknown command " + name);
  const std::size_t words = line.Words().size() - 1;
  if (words < command->leastWords || words > command->mostWords) {
    throw UsageError(fmt::format("usage: {} {}", command->name, command->usage));
  }
  if (command->check != nullptr) command->check(line);
  return *command;
}

int Run(const std::vector<std::string>& arguments) {
  const CommandLine line(arguments);
  if (line.Has("--help")) {
    PrintUsage(stdout);
    return 0;
  }
  const Command& command = FindCommand(line);
  const std::string pipe = line.Value("--pipe");
  if (pipe.empty()) throw UsageError("the option --pipe is missing");
  const auto timeout = line.Timeout();

  client::Session session(pipe);
  client::SlotTracker slots(session);
  if (!session.Connect(timeout)) {
    throw std::runtime_error(fmt::format("nobody serves at {} (waited {} s)", pipe, timeout.count()));
  }
  Context context{line, session, slots};
  return command.run(context);
}

}  // namespace

std::string Context::Call(const std::string& method, const std::string& arguments) const {
  const client::Reply reply = session.Call(method, arguments, line.Timeout());
  switch (reply.outcome) {
    case client::Reply::Outcome::Ok:
      return reply.content;
    case client::Reply::Outcome::Error:
      throw std::runtime_error(reply.content);
    case client::Reply::Outcome::TimedOut:
      throw std::runtime_error(fmt::format("{}: no answer within {} s", method, line.Timeout().count()));
    case client::Reply::Outcome::Closed:
      break;
  }
  throw std::runtime_error(method + ": the server has ended the session");
}

}  // namespace ravo::ctl

int main(int argc, char** argv) {
  try {
    return ravo::ctl::Run(host::Arguments(argc, argv));
  } catch (const ravo::ctl::UsageError& error) {
    fmt::print(stderr, "ravoctl: {}\n(ravoctl --help shows the usage)\n", error.what());
    return ravo::ctl::kWrongUsage;
  } catch (const std::exception& failure) {
    fmt::print(stderr, "ravoctl: {}\n", failure.what());
    return ravo::ctl::kFailed;
  }
}
