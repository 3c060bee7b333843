#include "ipc/ContentView.h"

#include <gmock/gmock.h>

using TESSARIN_COMMON::ContentView;

namespace {

ContentView Parsed(std::string_view text) {
  ContentView view;
  view.Parse(text);
  return view;
}

TEST(ContentView, NumbersAreOfOneKindEachAndOutOfRangeFail) {
  EXPECT_EQ(Parsed("[2.0]").Double(0), 2.0);
  EXPECT_EQ(Parsed("1e3").Double(4), 1000.0);
  EXPECT_EQ(Parsed("[7]").Double(0), 0.0);
  EXPECT_EQ(Parsed("[-9223372036854775808]").Integer(0), INT64_MIN);
  EXPECT_THAT([] { return Parsed("[9223372036854775808]").Integer(0); },
              testing::ThrowsMessage<std::runtime_error>("data_.f.flags & kInt64Flag"));
}

TEST(ContentView, AFailedParseLeavesNoValue) {
  auto view = Parsed("[1]");
  EXPECT_THAT([&] { view.Parse("[1,x]"); },
              testing::ThrowsMessage<std::runtime_error>("Parse json string fail. err=Invalid value.. offset=x]"));
  EXPECT_FALSE(view.HasValue());
  EXPECT_THAT([&] { view.Parse("]"); },
              testing::ThrowsMessage<std::runtime_error>("Parse json string fail. err=Invalid value.. offset=]"));
}

TEST(ContentView, AStringKeepsItsZerosAndAControlCharacterInItIsRefusedWhereverItStands) {
  EXPECT_EQ(Parsed(R"("a\u0000b")").AsString(), std::string("a\0b", 3));
  for (char c = 1; c < 0x20; ++c) {
    for (std::size_t before = 0; before < 40; ++before) {
      EXPECT_THROW(Parsed("[\"" + std::string(before, 'x') + c + "yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy\"]"),
                   std::runtime_error)
          << int{c} << " behind " << before;
    }
  }
}

// Memory goes from view to view; what is alive must not be overwritten by the next parse.
TEST(ContentView, ViewsAliveTogetherKeepTheirOwnValues) {
  const std::string large(300'000, 'l');
  auto first = Parsed("[\"" + large + "\",1]");
  auto second = Parsed(R"(["second"])");
  EXPECT_EQ(first.String(0), large);
  first = std::move(second);
  EXPECT_FALSE(second.HasValue());
  const auto third = Parsed(R"(["third"])");
  EXPECT_EQ(first.String(0), "second");
  EXPECT_EQ(third.String(0), "third");
}

}  // namespace
