#include "DwarfEngine.h"

#include <cxxabi.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace QX_MONITOR {

namespace {

constexpr std::uint64_t kMostFrames = 4096;  // a broken stack may lead in circles

// Only files of this machine, found by their build ids: the library's own finder may ask servers for them.
int FindDebugFile(Dwfl_Module* module, void** userData, const char* name, Dwarf_Addr base, const char* fileName,
                  const char* linkName, GElf_Word linkChecksum, char** debugFile) {
  return dwfl_build_id_find_debuginfo(module, userData, name, base, fileName, linkName, linkChecksum, debugFile);
}

const Dwfl_Callbacks kFileCallbacks = {.find_elf = dwfl_linux_proc_find_elf,
                                       .find_debuginfo = FindDebugFile,
                                       .section_address = nullptr,
                                       .debuginfo_path = nullptr};

const ThreadContext& ContextOf(void* argument) {
  return **static_cast<const ThreadContext**>(argument);
}

// The one thread of a session stands for whichever context is under way.
pid_t NextThread(Dwfl*, void* context, void** threadArgument) {
  const bool first = *threadArgument == nullptr;
  *threadArgument = first ? context : nullptr;
  return first ? getpid() : 0;
}

bool GetThread(Dwfl*, pid_t, void* context, void** threadArgument) {
  *threadArgument = context;
  return true;
}

bool ReadStack(Dwfl*, Dwarf_Addr address, Dwarf_Word* word, void* argument) {
  const ThreadContext& context = ContextOf(argument);
  const std::uint64_t offset = address - context.registers[kStackPointer];
  if (offset >= context.stack.size() || context.stack.size() - offset < sizeof *word) return false;
  std::memcpy(word, context.stack.data() + offset, sizeof *word);
  return true;
}

bool SetRegisters(Dwfl_Thread* thread, void* argument) {
  return dwfl_thread_state_registers(thread, 0, kRegisterCount, ContextOf(argument).registers.data());
}

const Dwfl_Thread_Callbacks kThreadCallbacks = {.next_thread = NextThread,
                                                .get_thread = GetThread,
                                                .memory_read = ReadStack,
                                                .set_initial_registers = SetRegisters,
                                                .detach = nullptr,
                                                .thread_detach = nullptr};

struct Walked {
  std::vector<WalkedFrame> frames;
  std::uint64_t most;
};

int AddFrame(Dwfl_Frame* state, void* argument) {
  auto& walked = *static_cast<Walked*>(argument);
  Dwarf_Addr address = 0;
  bool isInterrupted = false;  // otherwise a call is under way, and the address is the one to return to
  if (walked.frames.size() >= walked.most || !dwfl_frame_pc(state, &address, &isInterrupted)) return DWARF_CB_ABORT;
  walked.frames.push_back({.address = address, .codeAddress = isInterrupted ? address : address - 1});
  return DWARF_CB_OK;
}

// Changes with each module that comes or goes.
std::uint64_t CountLoads() {
  std::uint64_t count = 0;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* result) {
        *static_cast<std::uint64_t*>(result) = info->dlpi_adds + info->dlpi_subs;
        return 1;
      },
      &count);
  return count;
}

std::string Demangle(const char* name) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> readable(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                             std::free);
  return status == 0 ? readable.get() : name;
}

// Asks each unit. The library itself looks into a table of addresses, which Clang does not write.
Dwarf_Line* FindLine(Dwfl_Module* module, std::uint64_t address) {
  Dwarf_Addr bias = 0;
  for (Dwarf_Die* unit = nullptr; (unit = dwfl_module_nextcu(module, unit, &bias)) != nullptr;) {
    if (dwarf_haspc(unit, address - bias) > 0) return dwarf_getsrc_die(unit, address - bias);
  }
  return nullptr;
}

}  // namespace

int DwarfEngine::Open() {
  const std::lock_guard lock(mutex_);
  if (session_ != nullptr) return EALREADY;
  session_ = MakeSession();
  return session_ != nullptr ? 0 : ENOEXEC;
}

bool DwarfEngine::Close() {
  const std::lock_guard lock(mutex_);
  const bool stood = session_ != nullptr;
  session_.reset();
  symbols_.clear();
  return stood;
}

DwarfEngine::Session DwarfEngine::MakeSession() {
  symbols_.clear();
  loads_ = CountLoads();
  Session session(dwfl_begin(&kFileCallbacks));
  const bool whole = session != nullptr && dwfl_linux_proc_report(session.get(), getpid()) == 0 &&
                     dwfl_report_end(session.get(), nullptr, nullptr) == 0 &&
                     dwfl_attach_state(session.get(), nullptr, getpid(), &kThreadCallbacks, &unwound_);
  return whole ? std::move(session) : nullptr;
}

void DwarfEngine::Refresh() {
  if (session_ != nullptr && CountLoads() != loads_) session_ = MakeSession();
}

std::vector<WalkedFrame> DwarfEngine::Unwind(const ThreadContext& context, std::uint64_t maxFrames) {
  const std::lock_guard lock(mutex_);
  Refresh();
  if (session_ == nullptr) return {};
  unwound_ = &context;
  Walked walked{.frames = {}, .most = std::min(maxFrames, kMostFrames)};
  dwfl_getthread_frames(session_.get(), getpid(), AddFrame, &walked);  // what came before a failure counts
  unwound_ = nullptr;
  return walked.frames;
}

Dwfl_Module* DwarfEngine::ModuleOf(std::uint64_t address) {
  return session_ != nullptr ? dwfl_addrmodule(session_.get(), address) : nullptr;
}

std::string DwarfEngine::ModulePath(std::uint64_t address) {
  const std::lock_guard lock(mutex_);
  Dwfl_Module* const module = ModuleOf(address);
  const char* const name = module != nullptr
                               ? dwfl_module_info(module, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr)
                               : nullptr;
  return name != nullptr ? name : "";
}

DwarfEngine::Symbol DwarfEngine::SymbolAt(std::uint64_t address) {
  const std::lock_guard lock(mutex_);
  const auto known = symbols_.find(address);
  return known != symbols_.end() ? known->second : symbols_.emplace(address, FindSymbol(address)).first->second;
}

DwarfEngine::Symbol DwarfEngine::FindSymbol(std::uint64_t address) {
  Symbol symbol;
  Dwfl_Module* const module = ModuleOf(address);
  if (module == nullptr) return symbol;
  const char* const name = dwfl_module_addrname(module, address);
  if (name != nullptr) symbol.function = Demangle(name);
  const char* file = nullptr;
  if (Dwfl_Line* const line = dwfl_module_getsrc(module, address)) {
    file = dwfl_lineinfo(line, nullptr, &symbol.line, nullptr, nullptr, nullptr);
  } else if (Dwarf_Line* const found = FindLine(module, address)) {
    file = dwarf_linesrc(found, nullptr, nullptr);
    dwarf_lineno(found, &symbol.line);
  }
  if (file != nullptr) symbol.file = file;
  return symbol;
}

}  // namespace QX_MONITOR
