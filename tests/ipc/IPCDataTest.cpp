#include "ipc/IPCData.h"

#include <gmock/gmock.h>

#include "ipc/EventArguments.h"

using namespace TESSARIN_COMMON;

namespace {

TEST(IPCData, IsWrittenWithAllMembersInOrderAndWithoutBlanks) {
  IPCData data = MakeSessionEvent("connect", "[\"vc\"]\n\t\x01/\xC3\xA4");
  data.module_name = "m";
  data.context_id = "c\\";
  data.taskId = INT64_MIN;
  EXPECT_EQ(Serialize(data), R"({"method_name":{"module_name":"m","content_type":"JSON","message_type":"EVENT",)"
                             R"("message_key":"connect","context_id":"c\\","taskId":-9223372036854775808},)"
                             "\"content\":\"[\\\"vc\\\"]\\n\\t\\u0001/\xC3\xA4\"}");
}

TEST(IPCData, ComesBackUnchangedHoweverMuchItGrowsInEscapes) {
  const IPCData sent = MakeEvent("Text", std::string(100'000, '\x02'));
  IPCData read;
  ParseIpcData(Serialize(sent), read);
  EXPECT_EQ(read.content, sent.content);
  EXPECT_EQ(read.message_type, "EVENT");
}

TEST(IPCData, AWrongTypeFailsAtItsMemberAndKeepsWhatCameBefore) {
  const struct {
    const char* text;
    const char* failure;
    const char* key;
    std::int64_t taskId;
  } cases[] = {
      {"[]", "not object", "", 0},
      {R"("text")", "not object", "", 0},
      {R"({"method_name":{"message_key":"k","taskId":1.5},"content":"[]"})", "data_.f.flags & kInt64Flag", "k", 0},
      {R"({"method_name":{"message_key":"k","taskId":"5"},"content":"[]"})", "data_.f.flags & kInt64Flag", "k", 0},
      {R"({"content":"[]","method_name":{"taskId":5,"message_key":3}})", "IsString()", "", 0},
      {R"({"method_name":{"message_key":"k","context_id":null},"content":"[]"})", "IsString()", "k", 0},
      {R"({"method_name":{"message_key":"k","taskId":5},"content":[]})", "IsString()", "k", 5},
      {"", "Parse json string fail. err=The document is empty.. offset=", "", 0},
      {"{no", "Parse json string fail. err=Missing a name for object member.. offset=no", "", 0},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text);
    IPCData data;
    EXPECT_THAT([&] { ParseIpcData(row.text, data); }, testing::ThrowsMessage<std::runtime_error>(row.failure));
    EXPECT_EQ(data.message_key, row.key);
    EXPECT_EQ(data.taskId, row.taskId);
    EXPECT_EQ(data.content, "");
  }
}

TEST(IPCData, KeysBecomeMethodNamesAndEventNamesKeys) {
  constexpr std::pair<const char*, const char*> kMethods[] = {
      {"", ""}, {"setFps", "SetFps"}, {"a__b_", "AB"}, {"_x", "_x"}, {"get_3d", "Get3d"}};
  for (const auto& [key, name] : kMethods) EXPECT_EQ(MessageKeyToMethodName(key), name);
  constexpr std::pair<const char*, const char*> kEvents[] = {
      {"Server_Sub_Started", "SERVER_SUB_STARTED"}, {"OnP2pShare", "ON_P2P_SHARE"}, {"URLChange", "URLCHANGE"}};
  for (const auto& [name, key] : kEvents) EXPECT_EQ(EventNameToMessageKey(name), key);
}

TEST(EventArguments, ArePrintedFormattedWithRawRecordsAsTheyStand) {
  const char* const none = nullptr;
  EXPECT_EQ(EventArguments().Add("ann").Add(none).Add(std::string("b\"")).Add(1LL << 40).Add(-1.5).Add(true).Print(),
            "[\"ann\", \"b\\\"\", 1099511627776, -1.5, true]");
  EXPECT_EQ(EventArguments().AddRaw(R"({"a":1})").AddRaw("[]").Print(), "[{\"a\":1}, []]");
  EXPECT_EQ(EventArguments().Print(), "[]");
}

}  // namespace
