#include "common/JsonWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using namespace TESSARIN_COMMON;

namespace {

struct Mixed {
  std::int64_t kind = 0;
  std::int64_t wide = 0;
  char fixed[4] = {};
  const char* pointer = "";
  bool flag = false;
  double ratio = 0;
};

}  // namespace

template <>
constexpr auto TESSARIN_COMMON::kFields<Mixed> = Fields(Field{"kind", &Mixed::kind, Narrow::Int32OnWrite},
                                                        Field{"wide", &Mixed::wide}, Field{"fixed", &Mixed::fixed},
                                                        Field{"pointer", &Mixed::pointer}, Field{"flag", &Mixed::flag},
                                                        Field{"ratio", &Mixed::ratio});

namespace {

TEST(JsonWriter, WritesARecordInFieldOrderNarrowingWhereTheFieldSaysSo) {
  const Mixed mixed{.kind = 0x100000005,
                    .wide = 0x100000005,
                    .fixed = {'a', 'b', '\0', 'c'},
                    .pointer = "\"q\"",
                    .flag = true,
                    .ratio = 0.5};
  EXPECT_EQ(JsonText(mixed), R"({"kind":5,"wide":4294967301,"fixed":"ab","pointer":"\"q\"","flag":true,"ratio":0.5})");
}

TEST(JsonWriter, NullStringRaises) {
  Mixed mixed;
  mixed.pointer = nullptr;
  try {
    (void)JsonText(mixed);
    FAIL() << "no failure";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "str != 0");
  }
}

TEST(JsonWriter, UnterminatedFixedTextEndsAtItsArray) {
  Mixed mixed;
  std::fill(std::begin(mixed.fixed), std::end(mixed.fixed), 'x');
  EXPECT_NE(JsonText(mixed).find(R"("fixed":"xxxx")"), std::string::npos);
}

TEST(JsonWriter, OptionsSkipOrNullWhatIsEmpty) {
  JsonWriter writer;
  writer.StartObject();
  writer.Add("a", 0, JsonWriter::kSkipEmpty);
  writer.Add("b", std::string_view(), JsonWriter::kEmptyAsNull);
  writer.Add("c", std::int64_t{0});
  writer.Add("d", 1, JsonWriter::kSkipEmpty | JsonWriter::kEmptyAsNull);
  writer.EndObject();
  EXPECT_EQ(writer.Text(), R"({"b":null,"c":0,"d":1})");
}

TEST(JsonWriter, NumbersThatJsonLacksBecomeNull) {
  EXPECT_EQ(JsonText(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(JsonText(std::vector<double>{1.0, std::numeric_limits<double>::infinity()}), "[1.0,null]");
}

}  // namespace
