// The stacks of threads for a host. Nothing calls these from inside; their lists are released by SamplingExports.cpp.
#include <ravo/ravo.h>

#include <span>

#include "common/Clock.h"
#include "common/FfiMemory.h"
#include "common/Platform.h"
#include "log/RustLogger.h"
#include "monitor/StackSampler.h"
#include "monitor/ThreadList.h"
#include "monitor/ThreadName.h"

namespace {

using QX_MONITOR::StopModules;
using TESSARIN_COMMON::NewArray;
using TESSARIN_COMMON::NewList;
using TESSARIN_COMMON::NewText;

StopModules SetOf(const char* const* modules, std::uint32_t count) {
  const std::span names(modules, count);
  return {names.begin(), names.end()};
}

std::vector<char*> NewTexts(const std::vector<std::string>& texts) {
  std::vector<char*> copies;
  copies.reserve(texts.size());
  for (const std::string& text : texts) copies.push_back(NewText(text));
  return copies;
}

// Sets the symbol engine up before the first stack, for as long as one list takes.
class SymbolsOfList {
 public:
  SymbolsOfList() = default;
  ~SymbolsOfList() {
    if (called_) QX_MONITOR::CleanupSymbols();
  }
  SymbolsOfList(const SymbolsOfList&) = delete;
  SymbolsOfList& operator=(const SymbolsOfList&) = delete;

  void Need() {
    if (!called_) QX_MONITOR::InitialiseSymbols();
    called_ = true;
  }

 private:
  bool called_ = false;
};

// What a host asked for, for all threads of the list.
struct StackQuery {
  bool namedOnly;
  std::uint64_t maxFrames;
  StopModules stopModules;
};

ThreadExtendPerformance RecordOf(std::uint32_t id, const StackQuery& query, SymbolsOfList& symbols) {
  const QX_MONITOR::ThreadHandle thread = QX_MONITOR::OpenThreadById(id, QX_MONITOR::ThreadAccess::Full);
  const std::string name = ThreadName(thread, id);
  std::vector<std::string> stack;
  if ((!query.namedOnly || name.empty()) && id != TESSARIN_COMMON::CurrentThreadId()) {
    symbols.Need();
    stack = SampleThread(thread, query.maxFrames, query.stopModules);
  }
  const QX_MONITOR::ThreadTimes times = ReadThreadTimes(thread);
  return {.threadId = id,
          .name = NewText(QX_MONITOR::ShownName(name, id)),
          .userTime = times.userNs,
          .kernelTime = times.kernelNs,
          .reserved = 0,
          .stack = NewArray(NewTexts(stack)),
          .stackCount = static_cast<std::int32_t>(stack.size())};
}

// Tells the host's log what a call cost, in ms.
template <class Call>
bool Timed(const char* what, Call call) {
  const auto& clock = TESSARIN_COMMON::Clock::System();
  const std::int64_t start = clock.SteadyMs();
  const bool result = call();
  TESSARIN_LOG::RustLogger::GetInstance().Info(what + std::to_string(clock.SteadyMs() - start));
  return result;
}

}  // namespace

extern "C" {

FfiList RAVO_CALL getThreadPerformanceWithStackInfo(bool namedOnly, std::uint64_t maxFrames,
                                                    const char* const* stopModules, std::uint32_t stopCount) {
  const StackQuery query{namedOnly, maxFrames, SetOf(stopModules, stopCount)};
  SymbolsOfList symbols;
  std::vector<ThreadExtendPerformance> records;
  for (const std::uint32_t id : QX_MONITOR::OwnThreads()) records.push_back(RecordOf(id, query, symbols));
  return NewList(records);
}

FfiList RAVO_CALL getThreadStack(std::uint64_t threadId, std::uint64_t maxFrames, const char* const* stopModules,
                                 std::uint32_t stopCount) {
  return NewList(NewTexts(QX_MONITOR::SampleThreadById(threadId, maxFrames, SetOf(stopModules, stopCount))));
}

bool RAVO_CALL symInitializeCurrentProcess(void) {
  return Timed("SymInitialize cost: ", QX_MONITOR::InitialiseSymbols);
}

// The engine is cleaned up a second time without looking at the result. Wanted.
bool RAVO_CALL symCleanupCurrentProcess(void) {
  const bool cleaned = Timed("SymCleanup cost: ", QX_MONITOR::CleanupSymbols);
  static_cast<void>(QX_MONITOR::CleanupSymbols());
  return cleaned;
}

}  // extern "C"
