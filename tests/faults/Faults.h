#pragma once

#include <functional>
#include <string>

// Calls that fail on demand. The linker leads the tested code's calls of the system through functions of this folder,
// and memory goes through an operator new of its own; nothing of it is in the code under test. What is armed holds for
// this process and for children that it forks afterwards, which share it.
namespace faults {

enum class Call {
  Memory,
  Socket,
  Bind,
  Listen,
  Accept,
  Connect,
  Eventfd,
  Poll,
  SendMessage,
  Send,
  ReceiveMessage,
  ModeOfSocket,
  SegmentOpen,
  SegmentReserve,
  SegmentMap,
  SemaphoreOpen,
  SemaphorePost,
  MarkLock,
  ThreadCreate,
  ThreadKey,
  LibraryOpen,
  LibrarySymbol
};

// Lets the n-th of these calls fail from now on, once; 1 is the next one.
void Arm(Call call, int nth);
// Ends it. Whether the call came and failed.
bool Disarm();

// What a scenario came to in a child process of its own.
struct Outcome {
  bool fired = false;
  std::string text;    // what the scenario returned; how the process ended, if it did not return
  std::string errors;  // the child's standard error
};

// Runs the scenario in a forked child, with the n-th call failing. The child leaves by exit, so that leaks show and
// names are removed.
Outcome RunWithFault(Call call, int nth, const std::function<std::string()>& scenario);

}  // namespace faults
