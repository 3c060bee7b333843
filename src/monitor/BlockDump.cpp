#include "BlockDump.h"

#include <fmt/chrono.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>

#include "Files.h"
#include "ProcessDump.h"
#include "log/Modules.h"

namespace QX_MONITOR {

namespace {

constexpr const char* kMarker = "-block-";

std::string WithSeparator(const std::string& directory) {
  constexpr auto kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);
  if (directory.empty() || directory.ends_with('/') || directory.ends_with(kSeparator)) return directory;
  return directory + kSeparator;
}

}  // namespace

std::string TimeText() {
  std::array<char, 256> buffer{};
  const std::tm now = fmt::localtime(std::time(nullptr));
  return {buffer.data(), std::strftime(buffer.data(), buffer.size(), "%Y%m%d%H%M%S", &now)};
}

std::string BlockDumpName(std::uint64_t a, std::uint64_t b, std::uint64_t c) {
  return fmt::format("{}{}{}{}({})-{}{}", kDumpPrefix, TimeText(), kMarker, a, b, c, kDumpExtension);
}

int ModuleNumber(const std::string& text) {
  const auto& modules = TESSARIN_LOG::kModules;
  const auto found = std::find_if(modules.begin(), modules.end(), [&](auto name) { return Contains(text, name); });
  return found == modules.end() ? 0 : static_cast<int>(found - modules.begin()) + 1;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool WriteDump(const std::string& directory, const std::string& fileName) {
  return WriteProcessDump(WithSeparator(directory) + fileName);
}

bool WriteCallStacks(const std::vector<std::string>& stacks, const std::string& directory,
                     const std::string& fileName) {
  const std::string path = WithSeparator(directory) + fileName;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "w"), std::fclose);
  if (!file) return false;
  for (const std::string& stack : stacks) std::fprintf(file.get(), "%s\n", stack.c_str());
  return true;
}

std::size_t Prune(const std::string& directory, std::vector<std::string>& removed, const std::string& prefix) {
  const std::string folder = WithSeparator(directory);
  std::vector<FileAge> files = ListFiles(folder, Contains(prefix, "*") ? prefix : prefix + '*');
  if (files.size() <= kDumpsKept) return removed.size();
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) { return a.ageSeconds > b.ageSeconds; });
  files.resize(files.size() - kDumpsKept);
  for (const FileAge& file : files) {
    static_cast<void>(std::remove((folder + file.name).c_str()));
    removed.push_back(file.name);
  }
  return removed.size();
}

std::string TempFilePath(const std::string& suffix) {
  return TempDirectory() + TimeText() + suffix;
}

std::string UntimedTempFilePath(const std::string& suffix) {
  return TempDirectory() + suffix;
}

}  // namespace QX_MONITOR
