#include "ipc/ContentView.h"

#include <gtest/gtest.h>

#include <functional>

#include "common/JsonNode.h"

using TESSARIN_COMMON::ContentView;
using TESSARIN_COMMON::JsonNode;

namespace {

ContentView Parsed(std::string_view text) {
  ContentView view;
  view.Parse(text);
  return view;
}

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no failure";
}

TEST(ContentView, AnArgumentIsTheElementThenALoneRootThenTheDefault) {
  struct Case {
    const char* content;
    std::size_t index;
    std::string text;
    std::int64_t integer;
    bool boolean;
    double real;
  };
  const Case cases[] = {
      {R"(["a"])", 0, "a", 0, false, 0.0},
      {R"(["a"])", 1, "", 0, false, 0.0},
      {R"("lone")", 3, "lone", 0, false, 0.0},
      {R"([7])", 0, "", 7, false, 0.0},  // an integer is no real
      {R"([-9223372036854775808])", 0, "", INT64_MIN, false, 0.0},
      {R"(42)", 5, "", 42, false, 0.0},
      {R"([false,true])", 1, "", 0, true, 0.0},
      {R"(true)", 2, "", 0, true, 0.0},
      {R"(["5"])", 0, "5", 0, false, 0.0},
      {R"([null])", 0, "", 0, false, 0.0},
      {R"({"0":"a"})", 0, "", 0, false, 0.0},
      {R"([])", 0, "", 0, false, 0.0},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.content);
    const auto view = Parsed(row.content);
    EXPECT_EQ(view.String(row.index), row.text);
    EXPECT_EQ(view.Integer(row.index), row.integer);
    EXPECT_EQ(view.Boolean(row.index), row.boolean);
    EXPECT_EQ(view.Double(row.index), row.real);
  }
}

TEST(ContentView, ARealArgumentIsADoubleAndFailsAsAnInteger) {
  EXPECT_EQ(Parsed("[2.5]").Double(0), 2.5);
  EXPECT_EQ(Parsed("[2.0]").Double(0), 2.0);
  EXPECT_EQ(Parsed("1e3").Double(4), 1000.0);
  for (const char* content : {"[1.5]", "1.5", "[9223372036854775808]"}) {
    EXPECT_EQ(FailureOf([&] { static_cast<void>(Parsed(content).Integer(0)); }), "data_.f.flags & kInt64Flag");
  }
}

TEST(ContentView, AnAbsentChildHasNoValueAndFailsAsText) {
  const auto view = Parsed(R"([["x",2],{"a":1}])");
  EXPECT_EQ(view.Size(), 2u);
  EXPECT_EQ(view.Child(0).Child(0).AsString(), "x");
  EXPECT_EQ(view.Child(0).Integer(1), 2);
  std::int64_t a = 0;
  JsonNode(view.Child(1).ValueOrNull()).Get("a", a);
  EXPECT_EQ(a, 1);
  for (const auto& absent : {view.Child(2).HasValue(), view.Child(1).Child(0).HasValue(), ContentView().HasValue()}) {
    EXPECT_FALSE(absent);
  }
  EXPECT_EQ(FailureOf([&] { static_cast<void>(view.Child(2).AsString()); }), "IsString()");
}

TEST(ContentView, AFailedParseSaysWhereAndLeavesNoValue) {
  auto view = Parsed("[1]");
  EXPECT_EQ(FailureOf([&] { view.Parse(""); }), "Parse json string fail. err=The document is empty.. offset=");
  EXPECT_FALSE(view.HasValue());
  EXPECT_EQ(FailureOf([&] { view.Parse("[1,x]"); }), "Parse json string fail. err=Invalid value.. offset=x]");
}

TEST(ContentView, NestingDoesNotUseUpTheStack) {
  constexpr std::size_t kDepth = 1'000'000;
  EXPECT_EQ(Parsed("[7," + std::string(kDepth, '[') + std::string(kDepth, ']') + "]").Integer(0), 7);
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
