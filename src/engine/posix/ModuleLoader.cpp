#include "../ModuleLoader.h"

#include <dlfcn.h>

namespace TESSARIN_LUMARC {

void* LoadModule(const std::string& utf8Path, std::string& failure) {
  if (utf8Path.empty()) {
    failure = "dlopen: no path";  // an empty one stands for the program itself
    return nullptr;
  }
  // Local: the engine's plain names must not take the place of others in the process.
  void* const module = dlopen(utf8Path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module != nullptr) return module;
  const char* const text = dlerror();
  failure = std::string("dlopen: ") + (text != nullptr ? text : "");
  return nullptr;
}

void* FindSymbol(void* module, const char* name) {
  return dlsym(module, name);
}

}  // namespace TESSARIN_LUMARC
