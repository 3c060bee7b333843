#include "ipc/EventArguments.h"

#include <gtest/gtest.h>

using TESSARIN_COMMON::EventArguments;

namespace {

TEST(EventArguments, ArePrintedFormattedWithRawRecordsAsTheyStand) {
  const char* const none = nullptr;
  EXPECT_EQ(EventArguments().Add("ann").Add(none).Add(std::string("b\"")).Add(5).Add(-1.5).Add(true).Print(),
            "[\"ann\", \"b\\\"\", 5, -1.5, true]");
  EXPECT_EQ(EventArguments().AddRaw(R"({"a":1})").AddRaw("[]").Print(), "[{\"a\":1}, []]");
  EXPECT_EQ(EventArguments().Add(1LL << 40).Print(), "[1099511627776]");
  EXPECT_EQ(EventArguments().Print(), "[]");
}

}  // namespace
