#include "../Library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace host {

Library::Library(const std::string& path) : path_(path), module_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (module_ == nullptr) throw std::runtime_error(std::string("cannot load the library: ") + dlerror());
}

void* Library::Symbol(const char* name) const {
  void* const symbol = dlsym(module_, name);
  if (symbol == nullptr) throw std::runtime_error(path_ + " does not export " + name);
  return symbol;
}

}  // namespace host
