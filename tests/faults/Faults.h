#pragma once

#include <functional>
#include <string>
#include <string_view>

// Calls that fail on demand. The linker leads the tested code's calls of the system through functions of this folder,
// and memory goes through an operator new of its own; nothing of it is in the code under test. Only the children that
// RunWithFault forks are meant; the parent's own calls go through.
namespace faults {

// For malloc, realloc and operator new together. A call of the system goes by its own name.
constexpr const char* kMemory = "memory";

// Lets the n-th of these calls fail from now on, once; 1 is the next one. The name is a literal.
void Arm(const char* call, int nth);
// Ends it. Whether the call came and failed.
bool Disarm();
// Whether it has failed by now.
bool HasFired();
// Asked at each call: counts it; true if it is the one that has to fail.
bool IsToFail(std::string_view call);

// Adds to what the parent hears of the child's scenario.
void Tell(std::string_view text);

// What a scenario came to in a child process of its own.
struct Outcome {
  bool fired = false;
  std::string text;    // what the client and the scenario returned and told; how the process ended, if not well
  std::string errors;  // the child's standard error
};

using Scenario = std::function<std::string()>;
// Plays the parent's side meanwhile, and calls `arm` when the call is to fail from then on.
using Client = std::function<std::string(const std::function<void()>& arm)>;

// Runs the scenario in a forked child, with the n-th call failing: counted from the start if there is no client. The
// child leaves by exit, so that leaks show and names are removed.
Outcome RunWithFault(const char* call, int nth, const Scenario& scenario, const Client& client = {});

}  // namespace faults
