// ravoctl: talks to a running server from the command line, in the place of the client application.
#include <fmt/format.h>

#include <cstdio>

#include "Commands.h"
#include "host/Program.h"

namespace ravo::ctl {
namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

const Command& CheckedCommand(const CommandLine& line) {
  const Command& command = FindCommand(line.Words().front());
  const std::size_t words = line.Words().size() - 1;
  if (words < command.leastWords || words > command.mostWords) {
    throw UsageError(fmt::format("usage: {} {}", command.name, command.usage));
  }
  if (command.check != nullptr) command.check(line);
  return command;
}

int Run(const std::vector<std::string>& arguments) {
  const CommandLine line(arguments);
  if (line.Has("--help")) {
    if (line.Words().empty()) {
      PrintUsage();
    } else {
      fmt::print("{}", HelpOf(FindCommand(line.Words().front())));
    }
    return 0;
  }
  if (line.Words().empty()) throw UsageError("no command");
  const Command& command = CheckedCommand(line);
  if (command.runAlone != nullptr) return command.runAlone(line);
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
      ++calls;
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
