#include "ctl/Output.h"

#include <gmock/gmock.h>

#include "ctl/StreamReading.h"

namespace {

TEST(ReadableEvent, NamesTheArgumentsWhereTheirNumberIsThatOfTheDescription) {
  const struct {
    const char* key;
    const char* content;
    const char* text;
  } cases[] = {
      {"USER_JOIN", "[\n\t\"ann\",\t0\n]", "USER_JOIN  uid: \"ann\", value: 0"},
      {"RTC_SDK_INIT", "[]", "RTC_SDK_INIT"},
      {"USER_JOIN", "[\"ann\"]", "USER_JOIN  \"ann\""},
      {"UNHEARD_OF", "[1, {\"a\": [2]}]", "UNHEARD_OF  1, {\"a\":[2]}"},
      {"USER_JOIN", "no json", "USER_JOIN  no json"},
  };
  for (const auto& [key, content, text] : cases) EXPECT_EQ(ravo::ctl::ReadableEvent({key, content}), text);
  const std::string large = ravo::ctl::ReadableEvent({"X", "[\"" + std::string(5000, 'a') + "\"]"});
  EXPECT_LT(large.size(), 500u);
  EXPECT_THAT(large, testing::EndsWith("... (5002 bytes)"));
}

TEST(FrameAge, CountsAcrossTheWrapOfTheStampAndKnowsOtherStamps) {
  EXPECT_EQ(ravo::ctl::FrameAgeMs(1'999'990, 4'000'005), 15);
  EXPECT_EQ(ravo::ctl::FrameAgeMs(7, 2'000'007), 0);
  EXPECT_FALSE(ravo::ctl::FrameAgeMs(7, 60'008));
  EXPECT_FALSE(ravo::ctl::FrameAgeMs(2'000'000, 5));
}

TEST(Percentile, IsAValueOfTheList) {
  std::vector<std::int64_t> values;
  for (int i = 100; i >= 1; --i) values.push_back(i);
  EXPECT_EQ(ravo::ctl::Percentile(values, 50), 50);
  EXPECT_EQ(ravo::ctl::Percentile(values, 99), 99);
  EXPECT_EQ(ravo::ctl::Percentile({3}, 99), 3);
  EXPECT_FALSE(ravo::ctl::Percentile({}, 50));
}

}  // namespace
