#include <chrono>
#include <filesystem>
#include <fstream>

#include "Stand.h"

namespace {

using stand::Frame;

constexpr int kWidth = 33;
constexpr int kHeight = 17;
constexpr int kClipFrames = 5;

using Planes = std::vector<std::vector<std::uint8_t>>;

// The samples of the clip's n-th frame.
Planes ClipFrame(int number) {
  constexpr std::size_t kLuma = kWidth * kHeight;
  constexpr std::size_t kChroma = ((kWidth + 1) / 2) * ((kHeight + 1) / 2);
  Planes planes;
  for (const std::size_t size : {kLuma, kChroma, kChroma}) {
    auto& plane = planes.emplace_back();
    for (std::size_t i = 0; i < size; ++i) {
      plane.push_back(static_cast<std::uint8_t>(i * 7 + static_cast<std::size_t>(number) * 31 + planes.size()));
    }
  }
  return planes;
}

// A clip of an odd size, whose last frame is cut off.
class Media : public stand::Started {
 protected:
  void SetUp() override {
    path_ = std::filesystem::temp_directory_path() / "ravo-sim-media-test.y4m";
    std::ofstream file(path_, std::ios::binary);
    file << "YUV4MPEG2 W" << kWidth << " H" << kHeight << " F25:1 Ip A1:1 C420jpeg XANY=1\n";
    for (int i = 0; i < kClipFrames; ++i) {
      file << (i == 0 ? "FRAME Ip\n" : "FRAME\n");
      for (const auto& plane : ClipFrame(i)) {
        file.write(reinterpret_cast<const char*>(plane.data()), static_cast<std::streamsize>(plane.size()));
      }
    }
    file << "FRAME\ncut";
  }

  // A participant with the clip and with these further members, watched in this size.
  void Play(const std::string& userId, const std::string& members, int width, int height, int frameRate = 100) const {
    SimSetParams((R"({"sim.room": {"participants": [{"userId": ")" + userId + R"(", "video": ")" +
                  path_.generic_string() + "\"" + members + "}]}}")
                     .c_str());
    Join("me");
    Watch(userId + "_0", width, height, frameRate);
  }

  std::filesystem::path path_;
};

TEST_F(Media, FramesOfAFileComeUntouchedRoundAndRound) {
  Play("clip", "", kWidth, kHeight);
  ASSERT_TRUE(stand::WaitForFrames("clip", 2 * kClipFrames + 1));
  const auto frames = stand::Frames("clip");
  for (int i = 0; i <= 2 * kClipFrames; ++i) {
    const Frame& frame = frames[static_cast<std::size_t>(i)];
    EXPECT_EQ(frame.info.width, kWidth);
    EXPECT_EQ(frame.info.height, kHeight);
    EXPECT_EQ(frame.strides, (std::vector<std::int64_t>{33, 17, 17}));
    EXPECT_EQ(frame.planes, ClipFrame(i % kClipFrames)) << i;
  }
}

TEST_F(Media, OtherSizesAndStridesKeepTheNearestSample) {
  Play("padded", R"(, "strideExtra": 11)", 2 * kWidth, kHeight);
  ASSERT_TRUE(stand::WaitForFrames("padded", 1));
  const Frame frame = stand::Frames("padded").front();
  const Planes clip = ClipFrame(0);
  ASSERT_EQ(frame.strides, (std::vector<std::int64_t>{66 + 11, 33 + 11, 33 + 11}));
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < 2 * kWidth; ++x) {
      const auto got = frame.planes[0][static_cast<std::size_t>(y * 77 + x)];
      ASSERT_EQ(got, clip[0][static_cast<std::size_t>(y * kWidth + x / 2)]) << x << "," << y;
    }
  }
}

TEST_F(Media, ShapeChangesWhereItWasAskedTo) {
  Play("shape", R"(, "rotation": 90, "changes": [{"afterFrames": 2, "width": 48, "height": 32, "rotation": 180},
                                                 {"afterFrames": 4, "strideExtra": 5}])",
       kWidth, kHeight);
  ASSERT_TRUE(stand::WaitForFrames("shape", 6));
  const auto frames = stand::Frames("shape");
  const auto shape = [&](std::size_t i) {
    return std::vector<std::int64_t>{frames[i].info.width, frames[i].info.height, frames[i].info.rotation,
                                     frames[i].strides[0]};
  };
  EXPECT_EQ(shape(1), (std::vector<std::int64_t>{33, 17, 90, 33}));
  EXPECT_EQ(shape(2), (std::vector<std::int64_t>{48, 32, 180, 48}));
  EXPECT_EQ(shape(4), (std::vector<std::int64_t>{48, 32, 180, 53}));
  EXPECT_EQ(stand::Count("OnRemoteVideoSizeChanged shape 33 17"), 1);
  EXPECT_EQ(stand::Count("OnRemoteVideoSizeChanged shape 48 32"), 1);
}

TEST_F(Media, StreamFallsSilentAndComesBack) {
  Play("hush", R"(, "silentAfterFrames": 3, "silentForMs": 300)", kWidth, kHeight);
  ASSERT_TRUE(stand::WaitForFrames("hush", 4));
  const auto frames = stand::Frames("hush");
  const auto pause = frames[3].info.renderTimeMs - frames[2].info.renderTimeMs;
  EXPECT_GE((pause + 2000000) % 2000000, 300);
  EXPECT_LT(frames[3].info.renderTimeMs, 2000000);
}

TEST_F(Media, RunningStreamTakesAnotherEncoding) {
  Play("tuned", "", kWidth, kHeight);
  ASSERT_TRUE(stand::WaitForFrames("tuned", 1));
  Watch("tuned_0", 16, 8, 50);
  EXPECT_TRUE(stand::WaitForFrame("tuned", [](const Frame& frame) { return frame.info.width == 16; }));
}

TEST_F(Media, FileThatCannotBePlayedIsReportedAndThePatternStandsIn) {
  const auto before = SimViolationCount();
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "lost", "video": "no-such-file.y4m"}]}})");
  Join("me");
  Watch("lost_0", 64, 36, 30);
  EXPECT_TRUE(stand::WaitForFrames("lost", 1));
  EXPECT_EQ(SimViolationCount(), before + 1);
}

// The panel with the texts lies in the upper left corner; its brightness tells the pictures of two users apart.
TEST_F(Media, PatternMovesAndShowsWhoseItIs) {
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "gus"}, {"userId": "hal"}]}})");
  Join("me");
  Watch("gus_0", 321, 181, 60);
  Watch("hal_0", 321, 181, 60);
  ASSERT_TRUE(stand::WaitForFrames("gus", 2));
  ASSERT_TRUE(stand::WaitForFrames("hal", 1));
  const auto gus = stand::Frames("gus");
  const auto row = [](const Frame& frame, int y) {
    const auto* const start = frame.planes[0].data() + y * frame.strides[0];
    return std::vector<std::uint8_t>(start, start + frame.strides[0]);
  };
  EXPECT_NE(row(gus[0], 180), row(gus[1], 180));
  bool told = false;
  for (int y = 2; y < 9; ++y) told = told || row(gus[0], y) != row(stand::Frames("hal")[0], y);
  EXPECT_TRUE(told);
}

}  // namespace
