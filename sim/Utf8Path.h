#pragma once

#include <filesystem>
#include <string>

namespace sim {

// Paths arrive as UTF-8 in parameter texts, whatever the system's own form is.
inline std::filesystem::path Utf8Path(const std::string& path) {
  return {std::u8string(path.begin(), path.end())};
}

}  // namespace sim
