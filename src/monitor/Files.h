#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The few things that dumps need of a file system.
namespace QX_MONITOR {

struct FileAge {
  std::string name;  // without its folder
  std::int64_t ageSeconds = 0;
};

// The files of a folder, not its folders, whose names match the pattern, in the system's order. "*" stands for any
// text. A folder that cannot be read has none. `directory` is empty or ends in a separator.
[[nodiscard]] std::vector<FileAge> ListFiles(const std::string& directory, const std::string& pattern);

// Removes a file, or a folder with all that is in it; a link goes, and what it leads to stays. Returns an empty text
// if nothing is left there, else "Remove File Failed", as for every relative path, which is not touched. UTF-8.
[[nodiscard]] std::string RemovePath(const std::string& path);

// The folder for files of a moment, in UTF-8, with a separator at its end.
[[nodiscard]] std::string TempDirectory();

}  // namespace QX_MONITOR
