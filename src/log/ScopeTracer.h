#pragma once

#include <cstdint>
#include <string>

#include "common/Clock.h"

namespace TESSARIN_LOG {

// On the stack of a function: logs "entry {}" now and "exit {}, cost : {}" with the milliseconds at the end of the
// scope, also when an exception ends it. The function's name is qualified, as in "TESSARIN_TASK::TaskRunner::Run".
// The texts are literals and not copied: destructors trace too, and may not fail.
class ScopeTracer {
 public:
  ScopeTracer(const char* function, const char* module,
              const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());
  ~ScopeTracer();
  ScopeTracer(const ScopeTracer&) = delete;
  ScopeTracer& operator=(const ScopeTracer&) = delete;

 private:
  const char* const function_;
  const char* const module_;
  const TESSARIN_COMMON::Clock& clock_;
  const std::int64_t startMs_;
};

// Sums the calls of one function and logs "Function {} be executed {},cost {}us,avg {}us" when it ends. A tool for
// measuring by hand: nothing makes one in a finished build.
class FunctionStatistics {
 public:
  struct Limit {
    std::int32_t low = -1;
    std::int32_t high = 0x7FFFFFFF;
  };

  // A limit of 0 and 0 stands for the default.
  explicit FunctionStatistics(std::string function, Limit limit = {0, 0});
  ~FunctionStatistics();
  FunctionStatistics(const FunctionStatistics&) = delete;
  FunctionStatistics& operator=(const FunctionStatistics&) = delete;

  void AddCall(std::int64_t costUs);
  [[nodiscard]] Limit GetLimit() const { return limit_; }

 private:
  const std::string function_;
  const Limit limit_;
  std::int64_t count_ = 0;
  std::int64_t totalUs_ = 0;
};

}  // namespace TESSARIN_LOG
