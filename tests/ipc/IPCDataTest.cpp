#include "ipc/IPCData.h"

#include <gmock/gmock.h>

using namespace TESSARIN_COMMON;

namespace {

TEST(IPCData, ComesBackUnchangedHoweverMuchItGrowsInEscapes) {
  IPCData sent = MakeEvent("Text", std::string(100'000, '\x02') + "\"\\/\n\xC3\xA4");
  sent.taskId = INT64_MIN;
  IPCData read;
  ParseIpcData(Serialize(sent), read);
  EXPECT_EQ(read.content, sent.content);
  EXPECT_EQ(read.taskId, sent.taskId);
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

}  // namespace
