#include "slots/StreamDataManager.h"

#include <gtest/gtest.h>

#include "support/LogCapture.h"

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
    StreamInfo byUid;
    ASSERT_TRUE(table.GetStreamByUid(c.key, byUid)) << c.uid;
    EXPECT_EQ(byUid.uid, c.key);
    EXPECT_EQ(byUid.frameFormat, 0u);
    StreamInfo bySid;
    ASSERT_TRUE(table.GetStreamBySid("s", bySid));
    EXPECT_EQ(bySid.uid, "a");
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

TEST(StreamDataManager, FindsThePreviewUnderTheEmptyUid) {
  StreamDataManager table;
  const support::LogCapture log;
  table.RemovePreviewStream();
  EXPECT_TRUE(log.Has("[STREAM] StreamDataManager RemoveStream not found - sid: "));

  table.AddPreviewStream();
  const std::string first = table.GetPreviewSid();
  EXPECT_TRUE(first.starts_with("__preview_stream__"));
  table.AddPreviewStream();
  EXPECT_NE(table.GetPreviewSid(), first);
  StreamInfo found;
  EXPECT_TRUE(table.GetStreamBySid(first, found));  // stays until it is removed
  ASSERT_TRUE(table.GetStreamByUid("", found));
  EXPECT_EQ(found.sid, table.GetPreviewSid());
  EXPECT_TRUE(found.hasVideo && found.hasAudio);

  const std::string second = table.GetPreviewSid();
  table.RemovePreviewStream();
  EXPECT_FALSE(table.GetStreamBySid(second, found));
  EXPECT_EQ(table.GetPreviewSid(), second);
}

TEST(StreamDataManager, KnowsTheOwnCameraStream) {
  StreamDataManager table;
  table.AddSelfUid("me");
  table.UpdateStream(Stream("me", "screen", true));
  table.UpdateStream(Stream("other", "o"));
  EXPECT_EQ(table.GetSelfSid(), "");
  table.UpdateStream(Stream("me", "mine"));
  EXPECT_EQ(table.GetSelfSid(), "mine");
  table.SetSelfStreamHasVideo(false);

  table.ClearAllStreams();
  EXPECT_EQ(table.GetSelfUid() + table.GetSelfSid(), "");
  EXPECT_FALSE(table.GetSelfStreamHasVideo());
  StreamInfo found;
  EXPECT_FALSE(table.GetStreamBySid("mine", found));
}

TEST(StreamDataManager, GivesTheRecordThatAnnouncesARemoval) {
  StreamDataManager table;
  table.UpdateStream(Stream("a", "s", true));
  const auto records = table.GetShareMemoryInfoBySid("s");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].uid, "a");
  EXPECT_TRUE(records[0].isScreen);
  EXPECT_EQ(records[0].bufferSize, 0u);
  EXPECT_TRUE(table.GetShareMemoryInfoBySid("unknown").empty());
}

}  // namespace
