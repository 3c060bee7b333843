#include "../Files.h"

#include <fnmatch.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>

namespace QX_MONITOR {

namespace fs = std::filesystem;

std::vector<FileAge> ListFiles(const std::string& directory, const std::string& pattern) {
  const std::time_t now = std::time(nullptr);
  std::vector<FileAge> files;
  std::error_code ignored;
  fs::directory_iterator entry(directory.empty() ? "." : directory, ignored);
  for (; entry != fs::directory_iterator(); entry.increment(ignored)) {
    const std::string name = entry->path().filename();
    struct stat status {};
    if (fnmatch(pattern.c_str(), name.c_str(), 0) != 0 || stat(entry->path().c_str(), &status) != 0) continue;
    if (S_ISREG(status.st_mode)) files.push_back({name, now - status.st_mtime});
  }
  return files;
}

std::string RemovePath(const std::string& path) {
  constexpr const char* kFailed = "Remove File Failed";
  if (fs::path(path).is_relative()) return kFailed;
  std::error_code error;
  fs::remove_all(path, error);
  return error ? kFailed : "";
}

std::string TempDirectory() {
  std::error_code error;
  const std::string directory = fs::temp_directory_path(error);
  if (error) return "/tmp/";
  return directory.ends_with('/') ? directory : directory + '/';
}

}  // namespace QX_MONITOR
