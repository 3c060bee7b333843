#pragma once

#include <string>

namespace TESSARIN_LUMARC {

// A text of the engine's that may be missing.
inline std::string TextOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace TESSARIN_LUMARC
