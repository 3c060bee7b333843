#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "common/Platform.h"

namespace support {

// An empty folder of the test's own, removed with all that is in it.
class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> count = 0;
    const auto name =
        "ravo-test-" + std::to_string(TESSARIN_COMMON::CurrentProcessId()) + "-" + std::to_string(++count);
    path_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
  // With "/" between the names, which both systems take and JSON texts need not escape.
  [[nodiscard]] std::string Text() const { return path_.generic_string(); }
  // The bytes of a file in it.
  [[nodiscard]] std::string Read(const std::string& name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

}  // namespace support
