#include <gmock/gmock.h>

#include <limits>

#include "common/JsonNode.h"
#include "common/JsonWriter.h"

using namespace TESSARIN_COMMON;

namespace {

struct Point {
  std::int64_t x = 7;
  bool on = false;
};

struct Drawing {
  std::string name = "none";
  Point origin;
  std::vector<Point> points;
  std::vector<std::string> tags{"default"};
};

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
constexpr auto TESSARIN_COMMON::kFields<Point> = Fields(Field{"x", &Point::x}, Field{"on", &Point::on});
template <>
constexpr auto TESSARIN_COMMON::kFields<Drawing> = Fields(Field{"name", &Drawing::name},
                                                          Field{"origin", &Drawing::origin},
                                                          Field{"points", &Drawing::points},
                                                          Field{"tags", &Drawing::tags});
template <>
constexpr auto TESSARIN_COMMON::kFields<Mixed> = Fields(Field{"kind", &Mixed::kind, Narrow::Int32OnWrite},
                                                        Field{"wide", &Mixed::wide}, Field{"fixed", &Mixed::fixed},
                                                        Field{"pointer", &Mixed::pointer}, Field{"flag", &Mixed::flag},
                                                        Field{"ratio", &Mixed::ratio});

namespace {

Drawing Read(std::string_view text) {
  JsonNode root(text);
  Drawing drawing;
  ReadRecord(root, drawing);
  return drawing;
}

TEST(JsonNode, AbsentAndNullKeysKeepWhatIsThereAndListsTakeTheArraysSize) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"name":null,"origin":{"on":true}})",
       R"({"name":"none","origin":{"x":7,"on":true},"points":[],"tags":["default"]})"},
      {R"({"points":[{"x":1},{}],"tags":[]})",
       R"({"name":"none","origin":{"x":7,"on":false},"points":[{"x":1,"on":false},{"x":7,"on":false}],"tags":[]})"},
      {R"({"tags":5})", R"({"name":"none","origin":{"x":7,"on":false},"points":[],"tags":[]})"},
  };
  for (const auto& [text, drawing] : cases) EXPECT_EQ(JsonText(Read(text)), drawing);
}

TEST(JsonNode, FailuresNameTheirPlace) {
  const std::pair<const char*, const char*> cases[] = {
      {R"({"name":1})", "type unmatch[name]"},
      {R"({"origin":{"x":1.0}})", "type unmatch[origin.x]"},
      {R"({"origin":{"on":"true"}})", "wish bool, but not bool or int[origin.on]"},
      {R"({"origin":5})", "IsObject()[origin.x]"},
      {R"({"points":[{},{"x":"1"}]})", "type unmatch[points.[1].x]"},
      {R"({"tags":["a",2]})", "type unmatch[tags.[1]]"},
      {"[]", "IsObject()[name]"},
      {"", "Parse json string fail. err=The document is empty.. offset="},
      {R"({"name" 1})", "Parse json string fail. err=Missing a colon after a name of object member.. offset=1}"},
      {R"({"name":!2345678901234567890123456789012345})",
       "Parse json string fail. err=Invalid value.. offset=!2345678901234567890123456789012"},
      {R"({"origin":{"y":2905e307}})",  // an infinity could not be written again
       "Parse json string fail. err=Number too big to be stored in double.. offset=2905e307}}"},
  };
  for (const auto& [text, failure] : cases) {
    EXPECT_THAT([&] { Read(text); }, testing::ThrowsMessage<std::runtime_error>(failure)) << text;
  }
}

TEST(JsonNode, NestingDoesNotUseUpTheStack) {
  constexpr std::size_t kDepth = 1'000'000;
  const std::string text = R"({"name":"n","deep":)" + std::string(kDepth, '[') + std::string(kDepth, ']') + "}";
  EXPECT_EQ(Read(text).name, "n");
}

TEST(JsonNode, GettersAndNavigationKeepTheirRules) {
  JsonNode root(R"({"two":2,"big":4294967296,"minus":-1,"list":[1,2]})");
  bool flag = false;
  EXPECT_TRUE(root.Get("two", flag) && flag);
  EXPECT_TRUE(root.Get("minus", flag) && flag);
  std::int32_t narrow = 0;
  EXPECT_THROW(root.Get("big", narrow), std::runtime_error);
  double number = 0;
  EXPECT_TRUE(root.Get("two", number) && number == 2.0);
  std::uint64_t wide = 0;
  EXPECT_TRUE(root.Get("big", wide) && wide == 4294967296u);
  EXPECT_THROW(root.Get("minus", wide), std::runtime_error);
  EXPECT_FALSE(root.Get("none", number));
  EXPECT_THROW(root.Get("none", number, JsonNode::kMandatory), std::runtime_error);

  JsonNode& list = *root.Find("list");
  EXPECT_EQ(list.Size(), 2u);
  EXPECT_EQ(root.Size(), 0u);
  EXPECT_THROW(list[2], std::runtime_error);
  EXPECT_THROW(root[0], std::runtime_error);
  EXPECT_THROW(list.Find("x"), std::runtime_error);
}

TEST(JsonWriter, WritesARecordInFieldOrderNarrowingWhereTheFieldSaysSo) {
  Mixed mixed{0x100000005, 0x100000005, {'a', 'b', '\0', 'c'}, "\"q\"", true, 0.5};
  EXPECT_EQ(JsonText(mixed), R"({"kind":5,"wide":4294967301,"fixed":"ab","pointer":"\"q\"","flag":true,"ratio":0.5})");
  mixed.fixed[2] = 'x';  // a text without an end
  EXPECT_THAT(JsonText(mixed), testing::HasSubstr(R"("fixed":"abxc")"));
  mixed.pointer = nullptr;
  EXPECT_THAT([&] { (void)JsonText(mixed); }, testing::ThrowsMessage<std::runtime_error>("str != 0"));
}

TEST(JsonWriter, EscapesWhatMustBeWhereverItStands) {
  for (int c = 0; c < 256; ++c) {
    for (const std::size_t before : {0u, 5u, 15u, 16u, 63u, 64u, 100u}) {
      const std::string text = std::string(before, 'x') + static_cast<char>(c) + std::string(70, 'y');
      const std::string json = JsonText(text);
      const bool escaped = c < 0x20 || c == '"' || c == '\\';
      ASSERT_EQ(json[1 + before], escaped ? '\\' : static_cast<char>(c)) << c << " behind " << before;
      std::string back;
      JsonNode(json).Get("", back);
      ASSERT_EQ(back, text);
    }
  }
  EXPECT_EQ(JsonText("\"\\\b\f\n\r\t\x01\x1f\x7f/"), R"("\"\\\b\f\n\r\t\u0001\u001F)"
                                                     "\x7f/\"");
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
