#pragma once

#include <ravo/engine_abi.h>

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "Arguments.h"
#include "CallRules.h"
#include "Journal.h"
#include "StartupOrder.h"
#include "WriteJson.h"

// What all entries share. An entry is one row: its number of arguments, its name, and what it does. The types come from
// its prototype, so that a row with another number does not compile.
namespace sim {

// Stands for the work of an entry that is journalled and answers with 0, false or nothing.
struct Plain {};

inline void Enter(std::string_view entry, bool isRegistration, std::string line) {
  Journal::Get().Call(entry, std::move(line));
  StartupOrder::Get().Check(StartupOrder::KindOf(entry, isRegistration), entry);
  CallRules::Get().Delay(entry);
}

template <class Function, class Work, class... A>
ResultOf<Function> Answer(std::string_view entry, const Work& work, const A&... arguments) {
  using Result = ResultOf<Function>;
  Enter(entry, false, CallLine(entry, arguments...));
  if constexpr (std::is_arithmetic_v<Result>) {
    if (const auto result = CallRules::Get().Result(entry)) return static_cast<Result>(*result);
  }
  if constexpr (std::is_same_v<Work, Plain>) {
    return Result();
  } else {
    return work(arguments...);
  }
}

}  // namespace sim

#define SIM_TYPED_0(entry)
#define SIM_TYPED_1(entry) ::sim::ArgumentOf<decltype(entry), 0> a0
#define SIM_TYPED_2(entry) SIM_TYPED_1(entry), ::sim::ArgumentOf<decltype(entry), 1> a1
#define SIM_TYPED_3(entry) SIM_TYPED_2(entry), ::sim::ArgumentOf<decltype(entry), 2> a2
#define SIM_TYPED_4(entry) SIM_TYPED_3(entry), ::sim::ArgumentOf<decltype(entry), 3> a3
#define SIM_PASSED_0
#define SIM_PASSED_1 , a0
#define SIM_PASSED_2 , a0, a1
#define SIM_PASSED_3 , a0, a1, a2
#define SIM_PASSED_4 , a0, a1, a2, a3

// An entry that works: a function or lambda that takes the entry's arguments and returns its result.
#define SIM_ENTRY(count, entry, ...)                                                      \
  extern "C" ::sim::ResultOf<decltype(entry)> RAVO_CALL entry(SIM_TYPED_##count(entry)) { \
    return ::sim::Answer<decltype(entry)>(#entry, (__VA_ARGS__)SIM_PASSED_##count);       \
  }

// An entry without work of its own.
#define SIM_PLAIN(count, entry) SIM_ENTRY(count, entry, ::sim::Plain{})
