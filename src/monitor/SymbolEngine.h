#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// The symbols of this process: one engine, of the system's debug help on Windows, of DWARF on Linux. Called by one
// thread at a time.
namespace QX_MONITOR {

struct StackFrame {
  std::uint64_t address = 0;
  std::string function{};  // "Unknown Function" if it has no symbol
  std::string module{};    // without folder; "Unknown Module" if it is in none
  std::int32_t line = 0;
  std::string file{};  // empty if not known
};

// Reads what is known of the loaded modules. A failure goes to the host's error log and leaves what was there. An
// engine that stands already is a failure.
bool InitialiseSymbols();
// False if there was no engine.
bool CleanupSymbols();

[[nodiscard]] std::string ModuleAt(std::uint64_t codeAddress);

// Fills function, file and line. C++ names are readable ones, without parameters on Windows and with them on Linux, and
// are cut after 254 characters.
void ResolveSymbol(std::uint64_t codeAddress, StackFrame& frame);

// "<function>(<address in decimal>)", or empty. Sets the engine up at first use, for the life of the process.
[[nodiscard]] std::string AddressText(std::uint64_t address);

inline constexpr std::size_t kMaxFunctionName = 254;
inline constexpr const char* kUnknownFunction = "Unknown Function";
inline constexpr const char* kUnknownModule = "Unknown Module";

// What follows the last separator of either kind.
[[nodiscard]] std::string FileNameOfPath(const std::string& path);

}  // namespace QX_MONITOR
