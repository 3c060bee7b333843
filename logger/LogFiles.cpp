#include "LogFiles.h"

#include <spdlog/details/os.h>
#include <spdlog/fmt/chrono.h>

#include <map>
#include <system_error>
#include <vector>

#include "common/Platform.h"

namespace logger {
namespace {

namespace fs = std::filesystem;

// Names begin with the time of the start, so that the order of the names is the order of the runs.
using Runs = std::map<std::string, std::vector<fs::path>>;

Runs FindRuns(const fs::path& folder, const std::string& stem) {
  Runs runs;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    const auto utf8 = entry.path().filename().u8string();
    const std::string name(utf8.begin(), utf8.end());
    if (!name.starts_with(stem + "_") || !name.ends_with(".log")) continue;
    runs[name.substr(0, name.find('.', stem.size()))].push_back(entry.path());
  }
  return runs;
}

void RemoveOldest(Runs runs, std::size_t keep) {
  std::error_code ignored;
  for (; runs.size() > keep; runs.erase(runs.begin())) {
    for (const auto& file : runs.begin()->second) fs::remove(file, ignored);
  }
}

}  // namespace

fs::path PrepareLogFile(const fs::path& folder, const std::string& stem, int keepRuns) {
  fs::create_directories(folder);
  if (keepRuns > 0) RemoveOldest(FindRuns(folder, stem), static_cast<std::size_t>(keepRuns - 1));
  return folder / fmt::format("{}_{:%Y%m%d-%H%M%S}_{}.log", stem, spdlog::details::os::localtime(),
                              TESSARIN_COMMON::CurrentProcessId());
}

}  // namespace logger
