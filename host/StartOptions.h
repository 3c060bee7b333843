#pragma once

#include <string>

namespace host {

// What the host itself reads of the options text.
struct StartOptions {
  std::string text;
  bool readable = false;  // if not, the library is left to say what is wrong
  std::string pipe;
  std::string engineFile;  // the file that the library will load
};

// From the argument: the JSON text, or "@" and a file that holds it. Fails with a std::runtime_error that names the
// file if that cannot be read.
[[nodiscard]] StartOptions ReadStartOptions(const std::string& argument);

// True if there is such a file; the path is UTF-8.
[[nodiscard]] bool FileExists(const std::string& path);

}  // namespace host
