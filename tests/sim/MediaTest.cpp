#include "Stand.h"

namespace {

using stand::WaitForFrames;

using Media = stand::Started;

TEST_F(Media, StreamComesBackFromItsSilence) {
  Join(R"({"userId": "hush", "silentAfterFrames": 3, "silentForMs": 300})");
  Watch("hush_0", 64, 36, 30);
  const auto frames = WaitForFrames("hush", 4);
  ASSERT_GE(frames.size(), 4U);
  EXPECT_GE((frames[3].info.renderTimeMs - frames[2].info.renderTimeMs + 2000000) % 2000000, 300);
}

TEST_F(Media, FileThatCannotBePlayedIsReportedAndAMovingPatternStandsIn) {
  const auto before = SimViolationCount();
  Join(R"({"userId": "lost", "video": "no-such-file.y4m"})");
  Watch("lost_0", 320, 180, 60);
  const auto frames = WaitForFrames("lost", 2);
  EXPECT_EQ(SimViolationCount(), before + 1);
  ASSERT_GE(frames.size(), 2U);
  EXPECT_NE(frames[0].luma, frames[1].luma);
}

TEST_F(Media, PushesAFrameOfTheTestsOwn) {
  const std::uint8_t luma[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  const std::uint8_t chroma[2] = {9, 10};
  const std::uint8_t* const planes[] = {luma, chroma, chroma};
  const std::int64_t strides[] = {4, 2, 2};
  EXPECT_TRUE(SimPushFrame("pix", R"({"width": 4, "height": 2, "rotation": 270})", planes, 3, strides));
  const auto frames = WaitForFrames("pix", 1);
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].info.rotation, 270);
  EXPECT_EQ(frames[0].luma, (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8}));
}

}  // namespace
