#pragma once

#include <elfutils/libdwfl.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "../StackSampler.h"
#include "StackCapture.h"
#include "common/Singleton.h"

namespace QX_MONITOR {

// The modules of this process as the DWARF library reads them: unwinds captured stacks and finds symbols. Any thread
// may call. Modules that are loaded after Open are found too.
class DwarfEngine : public TESSARIN_COMMON::Singleton<DwarfEngine> {
 public:
  // 0, or what stood in the way as an error number of the system.
  int Open();
  bool Close();

  // The frames of a captured thread, innermost first; none without an engine.
  [[nodiscard]] std::vector<WalkedFrame> Unwind(const ThreadContext& context, std::uint64_t maxFrames);
  // Empty if nothing is known.
  [[nodiscard]] std::string ModulePath(std::uint64_t address);
  struct Symbol {
    std::string function;
    std::string file;
    std::int32_t line = 0;
  };
  [[nodiscard]] Symbol SymbolAt(std::uint64_t address);

 private:
  struct End {
    void operator()(Dwfl* dwfl) const { dwfl_end(dwfl); }
  };
  using Session = std::unique_ptr<Dwfl, End>;

  Session MakeSession();
  Dwfl_Module* ModuleOf(std::uint64_t address);
  Symbol FindSymbol(std::uint64_t address);
  void Refresh();

  std::mutex mutex_;  // guards all below
  Session session_;
  std::unordered_map<std::uint64_t, Symbol> symbols_;  // met in this session: the library searches from end to end
  std::uint64_t loads_ = 0;                            // loads and unloads when the session was made
  const ThreadContext* unwound_ = nullptr;             // while Unwind runs
};

}  // namespace QX_MONITOR
