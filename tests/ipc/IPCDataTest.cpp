#include "ipc/IPCData.h"

#include <gtest/gtest.h>

using namespace TESSARIN_COMMON;

namespace {

std::string FailureOf(std::string_view text, IPCData& data) {
  try {
    ParseIpcData(text, data);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no failure";
}

TEST(IPCData, IsWrittenWithAllMembersInOrderAndWithoutBlanks) {
  EXPECT_EQ(Serialize(MakeEvent("OnDetectError", "[1]")),
            R"({"method_name":{"module_name":"","content_type":"JSON","message_type":"EVENT",)"
            R"("message_key":"ON_DETECT_ERROR","context_id":"","taskId":0},"content":"[1]"})");
  IPCData data = MakeSessionEvent("connect", "[\"vc\"]\n\t\x01/\xC3\xA4");
  data.module_name = "m";
  data.context_id = "c\\";
  data.taskId = INT64_MIN;
  EXPECT_EQ(Serialize(data), R"({"method_name":{"module_name":"m","content_type":"JSON","message_type":"EVENT",)"
                             R"("message_key":"connect","context_id":"c\\","taskId":-9223372036854775808},)"
                             "\"content\":\"[\\\"vc\\\"]\\n\\t\\u0001/\xC3\xA4\"}");
}

TEST(IPCData, ComesBackUnchangedHoweverMuchItGrowsInEscapes) {
  IPCData sent = MakeEvent("Text", std::string(100'000, '\x02'));
  sent.message_type = kMessageCall;
  sent.taskId = 1LL << 53;
  IPCData read;
  ParseIpcData(Serialize(sent), read);
  EXPECT_EQ(read.content, sent.content);
  EXPECT_EQ(read.message_type, "CALL");
  EXPECT_EQ(read.message_key, "TEXT");
  EXPECT_EQ(read.taskId, sent.taskId);
}

TEST(IPCData, WhatIsAbsentKeepsItsValueAndUnknownMembersAreIgnored) {
  IPCData data;
  data.module_name = "kept";
  ParseIpcData(R"({"x":1,"content":"[]"})", data);
  EXPECT_EQ(data.content, "[]");
  EXPECT_EQ(data.module_name, "kept");
  ParseIpcData(R"({"method_name":{"y":{},"taskId":7,"message_key":"a_b"}})", data);
  EXPECT_EQ(data.taskId, 7);
  EXPECT_EQ(data.message_key, "a_b");
  EXPECT_EQ(data.content, "[]");
}

TEST(IPCData, AWrongTypeFailsAtItsMemberAndKeepsWhatCameBefore) {
  struct Case {
    const char* text;
    const char* failure;
    const char* key;
    std::int64_t taskId;
  };
  const Case cases[] = {
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
    EXPECT_EQ(FailureOf(row.text, data), row.failure);
    EXPECT_EQ(data.message_key, row.key);
    EXPECT_EQ(data.taskId, row.taskId);
    EXPECT_EQ(data.content, "");
  }
}

TEST(IPCData, KeysBecomeMethodNames) {
  constexpr std::pair<const char*, const char*> kCases[] = {{"get_current_volume", "GetCurrentVolume"},
                                                            {"GET_CURRENT_VOLUME", "GETCURRENTVOLUME"},
                                                            {"", ""},
                                                            {"setFps", "SetFps"},
                                                            {"a__b_", "AB"},
                                                            {"_x", "_x"},
                                                            {"get_3d", "Get3d"}};
  for (const auto& [key, name] : kCases) EXPECT_EQ(MessageKeyToMethodName(key), name);
}

TEST(IPCData, EventNamesBecomeKeys) {
  constexpr std::pair<const char*, const char*> kCases[] = {{"OnDetectError", "ON_DETECT_ERROR"},
                                                            {"Server_Sub_Started", "SERVER_SUB_STARTED"},
                                                            {"OnP2pShare", "ON_P2P_SHARE"},
                                                            {"shareMemoryUpdate", "SHARE_MEMORY_UPDATE"},
                                                            {"MeriTrackList", "MERI_TRACK_LIST"},
                                                            {"URLChange", "URLCHANGE"},
                                                            {"", ""}};
  for (const auto& [name, key] : kCases) EXPECT_EQ(EventNameToMessageKey(name), key);
}

}  // namespace
