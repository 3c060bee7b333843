// ravo-host: the small process around the library. It loads the library, starts the server with the options that it is
// given, and ends with it.
#include <fmt/format.h>
#include <ravo/ravo.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>

#include "host/Library.h"
#include "host/Program.h"
#include "host/StartOptions.h"

namespace {

constexpr char kUsage[] =
    "usage: ravo-host OPTIONS [--library PATH]\n"
    "Loads the Ravo library, starts the server with OPTIONS and ends with the server.\n"
    "  OPTIONS         the start-up options: a JSON text, or @FILE for a file that holds one\n"
    "  --library PATH  the library to load; by default {} beside this program\n"
    "  --help          shows this text\n"
    "Ctrl-C stops the server. Exit codes: 0 the server has ended, 1 it could not start, 2 wrong usage.\n";

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

struct CommandLine {
  std::string options;
  std::string library;
  bool help = false;
};

// Nothing if the arguments do not fit the usage.
std::optional<CommandLine> ReadCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line{"", host::ProgramFolder() + "/" + host::kRavoFile};
  bool haveOptions = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--help") {
      line.help = true;
      return line;
    }
    if (arguments[i] == "--library") {
      if (++i == arguments.size()) return std::nullopt;
      line.library = arguments[i];
    } else if (haveOptions || arguments[i].starts_with("--")) {
      return std::nullopt;
    } else {
      line.options = arguments[i];
      haveOptions = true;
    }
  }
  if (!haveOptions) return std::nullopt;
  return line;
}

// What is said is on the screen at once: the library ends the process when it likes.
template <class... Args>
void Say(fmt::format_string<Args...> format, Args&&... args) {
  fmt::print(format, std::forward<Args>(args)...);
  std::fflush(stdout);
}

void Require(const std::string& file, const char* what) {
  if (!host::FileExists(file)) throw std::runtime_error(std::string("no such ") + what + ": " + file);
}

void RAVO_CALL OnServerStops() {
  Say("ravo-host: the server stops\n");
}

int RunServer(const CommandLine& line) {
  const host::StartOptions options = host::ReadStartOptions(line.options);
  Require(line.library, "library");
  // The server would start without its engine and fail at the first request.
  if (options.readable) Require(options.engineFile, "engine library (option manuallyDylibPath)");

  // Masks signals, so it comes before the library makes threads.
  static std::atomic<RavoUninitFunction> uninit = nullptr;
  host::OnInterrupt([] {
    Say("ravo-host: asking the server to stop\n");
    const RavoUninitFunction function = uninit;
    if (function == nullptr) std::_Exit(kFailed);
    function();
  });

  Say("ravo-host: loading {}\n", line.library);
  const host::Library library(line.library);
  const auto init = library.Find<RavoInitFunction>("init_ravo");
  uninit = library.Find<RavoUninitFunction>("uninit_ravo");
  Say("ravo-host: starting the server for pipe {}, Ctrl-C stops it\n", options.pipe);
  const std::int32_t result = init(options.text.c_str(), OnServerStops);
  if (result == 0) return 0;
  throw std::runtime_error("the library refuses the options; its line \"parse serveroption error\" above tells why");
}

}  // namespace

int main(int argc, char** argv) {
  const auto line = ReadCommandLine(host::Arguments(argc, argv));
  if (!line || line->help) {
    fmt::print(line ? stdout : stderr, kUsage, host::kRavoFile);
    return line ? 0 : kWrongUsage;
  }
  try {
    return RunServer(*line);
  } catch (const std::exception& failure) {
    fmt::print(stderr, "ravo-host: {}\n", failure.what());
    return kFailed;
  }
}
