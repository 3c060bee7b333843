#include "reader/FrameImage.h"

#include <gtest/gtest.h>

#include "reader/Y4mWriter.h"
#include "support/TempFolder.h"

namespace {

using ravo::client::Frame;
using Bytes = std::vector<std::uint8_t>;

Frame Picture(std::uint32_t width, std::uint32_t height, std::array<std::uint32_t, 3> strides, Bytes data) {
  Frame frame;
  frame.width = width;
  frame.height = height;
  frame.strides = strides;
  frame.data = std::move(data);
  return frame;
}

TEST(FrameImage, TakesThePaddingOutFillsInRowsThatOddHeightsLackAndGivesNothingForWhatItCannotShow) {
  EXPECT_EQ(TightI420(Picture(2, 2, {3, 2, 1}, {1, 2, 0, 3, 4, 0, 5, 0, 6})), (Bytes{1, 2, 3, 4, 5, 6}));
  // 3 rows: 3 bytes of each chroma plane stand for a row of 2 and half a row.
  EXPECT_EQ(TightI420(Picture(3, 3, {3, 2, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 20, 21, 22})),
            (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 10, 11, 20, 21, 20, 21}));
  EXPECT_EQ(TightI420(Picture(1, 1, {1, 1, 1}, {7})), (Bytes{7, 128, 128}));

  EXPECT_TRUE(TightI420(Picture(4, 2, {3, 2, 2}, Bytes(10))).empty());
  EXPECT_TRUE(TightI420(Picture(2, 2, {2, 1, 1}, Bytes(5))).empty());  // less than the planes
  EXPECT_TRUE(RgbFromFrame(Picture(0, 2, {0, 0, 0}, {})).empty());
}

TEST(FrameImage, TurnsTheCornersOfTheVideoRangeIntoColours) {
  const struct {
    std::uint8_t y, u, v;
    Bytes rgb;
  } cases[] = {{16, 128, 128, {0, 0, 0}}, {235, 128, 128, {255, 255, 255}}, {81, 90, 240, {255, 0, 0}}};
  for (const auto& c : cases) {
    const auto rgb = RgbFromFrame(Picture(2, 2, {2, 1, 1}, {c.y, c.y, c.y, c.y, c.u, c.v}));
    ASSERT_EQ(rgb.size(), 12u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(rgb[9 + i], c.rgb[i], 2);
  }
}

TEST(Y4mWriter, WritesFramesOfOneSize) {
  const support::TempFolder folder;
  {
    ravo::client::Y4mWriter writer(folder.Path() / "clip", 25);
    EXPECT_TRUE(writer.Write(Picture(2, 2, {2, 1, 1}, {'a', 'b', 'c', 'd', 'e', 'f'})));
    EXPECT_FALSE(writer.Write(Picture(2, 4, {2, 1, 1}, Bytes(12))));
    EXPECT_TRUE(writer.Write(Picture(2, 2, {2, 1, 1}, {'g', 'h', 'i', 'j', 'k', 'l'})));
  }
  EXPECT_EQ(folder.Read("clip"), "YUV4MPEG2 W2 H2 F25:1 Ip A1:1 C420jpeg\nFRAME\nabcdefFRAME\nghijkl");
}

}  // namespace
