#pragma once

#include <ravo/engine_abi.h>

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <string>
#include <type_traits>

#include "common/Singleton.h"

namespace TESSARIN_LUMARC {

// One called entry of the engine: a word that holds its address. Calling it does not test the address, so an entry that
// the library lacks faults.
template <class Function>
class EngineEntry;
template <class Result, class... Args>
class EngineEntry<Result(Args...)> {
 public:
  using Pointer = Result(RAVO_CALL*)(Args...);

  EngineEntry() = default;
  EngineEntry& operator=(Pointer pointer) {
    pointer_ = pointer;
    return *this;
  }

  Result operator()(Args... args) const { return pointer_(args...); }
  explicit operator bool() const { return pointer_ != nullptr; }

  // For an entry that takes one callback: registers the function `Handler`, which has to be of the callback's type.
  template <auto Handler>
  requires std::invocable<Pointer, decltype(Handler)>
  void Register() const { pointer_(Handler); }

 private:
  Pointer pointer_ = nullptr;
};

// The module, then one word for each name of EngineSymbols.def, empty until the library is loaded. Names that are only
// resolved have no type, as nobody calls them.
struct EngineTable {
  void* module = nullptr;
#define RAVO_ENGINE_CALLED(Name) EngineEntry<decltype(::Name)> Name;
#define RAVO_ENGINE_RESOLVED(Name) void* Name = nullptr;
#include "EngineSymbols.def"
};

// The names, in the order of the table's words.
inline constexpr auto kEngineSymbolNames = std::to_array<const char*>({
#define RAVO_ENGINE_CALLED(Name) #Name,
#define RAVO_ENGINE_RESOLVED(Name) #Name,
#include "EngineSymbols.def"
});

// Which of the names the system calls.
inline constexpr auto kEngineSymbolCalled = std::to_array<bool>({
#define RAVO_ENGINE_CALLED(Name) true,
#define RAVO_ENGINE_RESOLVED(Name) false,
#include "EngineSymbols.def"
});

static_assert(kEngineSymbolNames.size() == 499);
static_assert(std::count(kEngineSymbolCalled.begin(), kEngineSymbolCalled.end(), true) == 237);
static_assert(std::count(kEngineSymbolCalled.begin(), kEngineSymbolCalled.end(), false) == 262);
static_assert(sizeof(EngineTable) == (1 + kEngineSymbolNames.size()) * sizeof(void*));
static_assert(std::is_standard_layout_v<EngineTable> && std::is_trivially_copyable_v<EngineTable>);

// The engine, loaded at run time. Its table is written by the host's thread before others exist that read it, and only
// read afterwards; tests write entries of their own. The library is never unloaded.
//   EngineApi::GetInstance().SetFps(30);
//   EngineApi::GetInstance().OnUserJoin.Register<&OnUserJoin>();
class EngineApi : public TESSARIN_COMMON::Singleton<EngineApi>, public EngineTable {
 public:
  // Loads the library at this full path and looks all names up. Returns whether there is a library; names that it lacks
  // stay empty without a word. If there is none, the system's reason goes to the log and the entries stay as they are.
  bool Load(const std::string& utf8Path) noexcept;

 private:
  friend class TESSARIN_COMMON::Singleton<EngineApi>;
  EngineApi() = default;
};

}  // namespace TESSARIN_LUMARC
