#include "EngineApi.h"

#include <cstring>

#include "ModuleLoader.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

// Stores an address in a word of the table, which all have the size of a pointer.
void SetWord(EngineTable& table, std::size_t index, void* address) {
  auto* const bytes = reinterpret_cast<std::byte*>(&table);
  std::memcpy(bytes + index * sizeof(void*), &address, sizeof(address));
}

}  // namespace

bool EngineApi::Load(const std::string& utf8Path) noexcept {
  std::string failure;
  module = LoadModule(utf8Path, failure);
  if (module == nullptr) {
    TESSARIN_LOG::LogAt("Ravo", TESSARIN_LOG::Level::Failure, "engine library: {}", failure);
    return false;
  }
  for (std::size_t i = 0; i < kEngineSymbolNames.size(); ++i) {
    SetWord(*this, i + 1, FindSymbol(module, kEngineSymbolNames[i]));
  }
  return true;
}

}  // namespace TESSARIN_LUMARC
