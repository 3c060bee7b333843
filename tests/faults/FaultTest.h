#pragma once

#include <gmock/gmock.h>

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "Faults.h"

namespace faults {

// A call and what the scenario may come to when it fails, whichever of its uses it is.
struct Case {
  const char* call;
  std::vector<std::string> outcomes;
  bool haveAllToCome = true;  // false where the threads of the scenario race for the call
};

inline void PrintTo(const Case& fault, std::ostream* out) {
  *out << fault.call;
}

using FaultTest = testing::TestWithParam<Case>;

inline std::string NameOf(const testing::TestParamInfo<Case>& test) {
  return test.param.call;
}

// Fails each use of the call in turn, until none is left, and looks at what came of it. No outcome but the stated ones
// may come, and as a rule each of them has to; without a fault it is "done".
inline void ExpectOutcomes(const Case& fault, const Scenario& scenario, const Client& client = {}) {
  constexpr int kMost = 2000;
  std::set<std::string> seen;
  for (int nth = 1; nth < kMost; ++nth) {
    const Outcome outcome = RunWithFault(fault.call, nth, scenario, client);
    if (!outcome.fired) {
      EXPECT_EQ(outcome.text, "done") << outcome.errors;
      EXPECT_GT(nth, 1) << "the scenario makes no such call";
      if (fault.haveAllToCome) {
        EXPECT_THAT(seen, testing::UnorderedElementsAreArray(fault.outcomes));
      }
      return;
    }
    EXPECT_THAT(fault.outcomes, testing::Contains(outcome.text)) << "call " << nth << '\n' << outcome.errors;
    seen.insert(outcome.text);
  }
  FAIL() << "no end of calls";
}

}  // namespace faults
