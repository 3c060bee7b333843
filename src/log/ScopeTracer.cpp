#include "ScopeTracer.h"

#include <utility>

#include "LogInstance.h"

namespace TESSARIN_LOG {

ScopeTracer::ScopeTracer(const char* function, const char* module, const TESSARIN_COMMON::Clock& clock)
    : function_(function), module_(module), clock_(clock), startMs_(clock.SteadyMs()) {
  LogAt(module_, Level::Progress, "entry {}", function_);
}

ScopeTracer::~ScopeTracer() {
  LogAt(module_, Level::Progress, "exit {}, cost : {}", function_, clock_.SteadyMs() - startMs_);
}

FunctionStatistics::FunctionStatistics(std::string function, Limit limit)
    : function_(std::move(function)), limit_(limit.low == 0 && limit.high == 0 ? Limit{} : limit) {}

FunctionStatistics::~FunctionStatistics() {
  LogAt("PCSDK", Level::Progress, "Function {} be executed {},cost {}us,avg {}us", function_, count_, totalUs_,
        count_ == 0 ? 0 : totalUs_ / count_);
}

void FunctionStatistics::AddCall(std::int64_t costUs) {
  ++count_;
  totalUs_ += costUs;
}

}  // namespace TESSARIN_LOG
