#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "Faults.h"

namespace faults {

// A call and what the scenario comes to when it fails: each outcome for some use of the call.
struct Case {
  const char* call;
  std::vector<std::string> outcomes;
  std::vector<std::string> others = {};  // these may come too: the threads of the scenario race for the call
};

inline void PrintTo(const Case& fault, std::ostream* out) {
  *out << fault.call;
}

using FaultTest = testing::TestWithParam<Case>;

inline std::string NameOf(const testing::TestParamInfo<Case>& test) {
  return test.param.call;
}

// Fails each use of the call in turn, until none is left, and collects what came of it: nothing but the stated
// outcomes, and "done" without a fault.
inline void FailEachUse(const Case& fault, const Scenario& scenario, const Client& client,
                        std::set<std::string>& seen) {
  constexpr int kMost = 2000;
  for (int nth = 1; nth < kMost; ++nth) {
    const Outcome outcome = RunWithFault(fault.call, nth, scenario, client);
    if (!outcome.fired) {
      EXPECT_EQ(outcome.text, "done") << outcome.errors;
      return;
    }
    if (std::ranges::count(fault.others, outcome.text) == 0) {
      EXPECT_THAT(fault.outcomes, testing::Contains(outcome.text)) << "call " << nth << '\n' << outcome.errors;
    }
    seen.insert(outcome.text);
  }
  FAIL() << "no end of calls";
}

// Where threads race, the n-th use is another one in each run, so that a round may miss an outcome; not all of many do.
inline void ExpectOutcomes(const Case& fault, const Scenario& scenario, const Client& client = {}) {
  const int rounds = fault.others.empty() ? 1 : 20;
  std::set<std::string> seen;
  const auto isSeen = [&](const std::string& outcome) { return seen.contains(outcome); };
  for (int round = 0; round < rounds && !std::ranges::all_of(fault.outcomes, isSeen); ++round) {
    FailEachUse(fault, scenario, client, seen);
    if (testing::Test::HasFailure()) break;
  }
  EXPECT_THAT(seen, testing::IsSupersetOf(fault.outcomes));
}

}  // namespace faults
