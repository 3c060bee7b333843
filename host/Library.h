#pragma once

#include <string>

namespace host {

// A library loaded at run time, for the rest of the process. Failures are std::runtime_errors that name the file.
class Library {
 public:
  // Libraries that it needs are found beside it.
  explicit Library(const std::string& path);

  template <class Function>
  [[nodiscard]] Function Find(const char* name) const {
    return reinterpret_cast<Function>(Symbol(name));
  }

 private:
  [[nodiscard]] void* Symbol(const char* name) const;

  std::string path_;
  void* module_;
};

}  // namespace host
