#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "CommandLine.h"
#include "client/Session.h"
#include "client/SlotTracker.h"

namespace ravo::ctl {

// What a command works with: its own words, and a session that is connected when it runs.
struct Context {
  const CommandLine& line;
  client::Session& session;
  client::SlotTracker& slots;
  mutable std::int64_t calls = 0;  // that were answered

  [[nodiscard]] const std::string& Word(std::size_t index) const { return line.Words().at(index + 1); }
  [[nodiscard]] bool HasWord(std::size_t index) const { return index + 1 < line.Words().size(); }
  // The content of the reply; fails with a std::runtime_error that names the method if there is none.
  std::string Call(const std::string& method, const std::string& arguments = "[]") const;
};

struct Command {
  const char* name;
  const char* usage;  // the words and options behind the name
  const char* help;
  std::size_t leastWords;  // behind the name
  std::size_t mostWords;
  int (*run)(Context& context);                        // gives the exit code
  void (*check)(const CommandLine& line) = nullptr;    // of the words, before anything is connected
  int (*runAlone)(const CommandLine& line) = nullptr;  // in place of run, for a command that needs no server
};

// All of them, in the order in which they are shown.
[[nodiscard]] std::span<const Command> Commands();
// Fails with a UsageError for a name that is none.
[[nodiscard]] const Command& FindCommand(const std::string& name);
[[nodiscard]] std::string HelpOf(const Command& command);

// Requests and events.
int RunCall(Context& context);
void CheckCall(const CommandLine& line);
int RunWatch(Context& context);
void CheckWatch(const CommandLine& line);
int RunStatus(Context& context);
int RunStreams(Context& context);
int RunDevices(Context& context);
int RunWindows(Context& context);

// Frames.
int RunSnapshot(Context& context);
int RunRecord(Context& context);
void CheckFrames(const CommandLine& line);

// Of the option --subscribe, wherever it stands.
void CheckSubscribe(const CommandLine& line);

// A whole visit to a meeting.
int RunAttend(Context& context);
void CheckAttend(const CommandLine& line);

// What is going on, second by second.
int RunTop(Context& context);
void CheckTop(const CommandLine& line);

// Without a server.
int RunMethods(const CommandLine& line);
int RunCompletion(const CommandLine& line);
void CheckCompletion(const CommandLine& line);
int RunHelp(const CommandLine& line);
void PrintUsage();

}  // namespace ravo::ctl
