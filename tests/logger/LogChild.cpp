// A process that logs, for the tests to look at what is left of it. Arguments: what to do, and the folder of the files.
#include <ravo/log_abi.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <thread>

#include "host/Program.h"

namespace {

int Create(const std::string& folder, int keep = 7, int flush = 1) {
  return CreateTessarinLogger(3, folder.c_str(), "TESSARIN_RAVO_COMMON", "Ravo", 0, keep, flush);
}

void Write(int level, const std::string& text) {
  TessarinLogWrite("Ravo", level, text.c_str());
}

void WriteMany(const std::string& text, int count) {
  for (int i = 0; i < count; ++i) Write(3, text + " " + std::to_string(i));
}

void WriteEarlyLines(const std::string& folder) {
  Write(3, "early 1");
  Write(3, "early 2");
  if (folder != "none") Create(folder);
  Write(3, "later");
}

// The process ends while other threads are writing.
[[noreturn]] void ExitUnderLoad(const std::string& folder) {
  Create(folder, 7, 0);
  for (int i = 0; i < 3; ++i) std::thread([] { WriteMany("busy", 1 << 30); }).detach();
  WriteMany("mine", 2000);
  std::exit(0);
}

// Waits for its end by the test, so that no flush at exit helps.
void HangAfterWarning(const std::string& folder) {
  Create(folder, 7, 0);
  Write(4, "a warning");
  std::cout << "written" << std::endl;
  std::this_thread::sleep_for(std::chrono::hours(1));
}

void WriteBig(const std::string& folder) {
  Create(folder);
  WriteMany(std::string(1 << 20, 'x'), 40);
}

void WriteMisuse(const std::string& folder) {
  std::cout << TessarinLogWrite(nullptr, 3, "text") << TessarinLogWrite("Ravo", 3, nullptr)
            << CreateTessarinLogger(0, nullptr, "n", "f", 0, 7, 1) << CreateTessarinLogger(0, "", "n", "f", 1, 7, 1);
  std::cout << Create(folder) << Create(folder);
  Write(3, "one\nforged\r\x1b[2J\x7f\tend");
}

}  // namespace

int main(int argc, char** argv) {
  const auto arguments = host::Arguments(argc, argv);
  const std::map<std::string, void (*)(const std::string&)> actions = {{"early", WriteEarlyLines},
                                                                       {"exit", ExitUnderLoad},
                                                                       {"warning", HangAfterWarning},
                                                                       {"big", WriteBig},
                                                                       {"misuse", WriteMisuse}};
  actions.at(arguments.at(0))(arguments.at(1));
}
