#pragma once

#include <string>

namespace TESSARIN_LUMARC {

// Loads a library by its full path, which is UTF-8; what it needs itself is looked for in its own folder too. Null if
// that fails, with the name of the call and the system's text in `failure`.
[[nodiscard]] void* LoadModule(const std::string& utf8Path, std::string& failure);

// The address of an exported name; null if the library lacks it.
[[nodiscard]] void* FindSymbol(void* module, const char* name);

}  // namespace TESSARIN_LUMARC
