#pragma once

#include <functional>
#include <string>
#include <vector>

// What a program asks of its system, the same on both.
namespace host {

// The arguments after the program's name, UTF-8.
[[nodiscard]] std::vector<std::string> Arguments(int argc, char** argv);
// The folder that the program lies in, UTF-8.
[[nodiscard]] std::string ProgramFolder();

extern const char* const kRavoFile;    // the library's file name
extern const char* const kEngineFile;  // what the library appends to the engine's folder, separator included

// Calls `stop` on a thread of its own at Ctrl-C or a request to terminate. A second one ends the process at once with
// exit code 130. Called before any other thread is made.
void OnInterrupt(std::function<void()> stop);

}  // namespace host
