#include "slots/StreamDataManager.h"

#include <gtest/gtest.h>

namespace {

using namespace TESSARIN_LUMARC::slots;

StreamInfo Stream(const std::string& uid, const std::string& sid, bool isScreen = false) {
  StreamInfo info;
  info.uid = uid;
  info.sid = sid;
  info.isScreen = isScreen;
  info.frameFormat = 9;
  return info;
}

TEST(StreamDataManager, KeepsCameraAndScreenOfAUserUnderTheirKeys) {
  const struct {
    const char *uid, *key;
    bool isScreen;
  } cases[] = {{"a", "a", false},
               {"a_screen_suffix", "a", false},
               {"a", "a_screen_suffix", true},
               {"_screen_suffixa_screen_suffix", "a_screen_suffix", true}};
  for (const auto& c : cases) {
    StreamDataManager table;
    table.UpdateStream(Stream(c.uid, "s", c.isScreen));
    StreamInfo found;
    ASSERT_TRUE(table.GetStreamByUid(c.key, found)) << c.uid;
    EXPECT_EQ(found.uid, c.key);
    EXPECT_EQ(found.frameFormat, 0u);
    ASSERT_TRUE(table.GetStreamBySid("s", found));
    EXPECT_EQ(found.uid, "a");
  }
}

TEST(StreamDataManager, LosesTheNewStreamOfAUserWithTheOldOneUntilItsNextUpdate) {
  StreamDataManager table;
  table.UpdateStream(Stream("a", "old"));
  table.UpdateStream(Stream("a", "new"));
  StreamInfo found;
  ASSERT_TRUE(table.GetStreamByUid("a", found));
  EXPECT_EQ(found.sid, "new");
  table.RemoveStream("old");
  EXPECT_FALSE(table.GetStreamByUid("a", found));
  EXPECT_TRUE(table.GetStreamBySid("new", found));
  table.UpdateStream(Stream("a", "new"));
  EXPECT_TRUE(table.GetStreamByUid("a", found));
}

TEST(StreamDataManager, KnowsTheOwnCameraStream) {
  StreamDataManager table;
  table.AddSelfUid("me");
  table.UpdateStream(Stream("me", "screen", true));
  EXPECT_EQ(table.GetSelfSid(), "");
  table.UpdateStream(Stream("me", "mine"));
  EXPECT_EQ(table.GetSelfSid(), "mine");
  table.RemoveSelfUidSid();
  EXPECT_EQ(table.GetSelfUid() + table.GetSelfSid(), "");

  table.AddSelfUid("me");
  table.SetSelfStreamHasVideo(false);
  table.ClearAllStreams();
  EXPECT_EQ(table.GetSelfUid(), "");
  EXPECT_FALSE(table.GetSelfStreamHasVideo());
  StreamInfo found;
  EXPECT_FALSE(table.GetStreamBySid("mine", found));
}

}  // namespace
