// Pictures from a file through the engine, the slot and the reader: every byte.
#include <algorithm>
#include <array>
#include <fstream>
#include <random>
#include <set>

#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Frame;

// A short clip of noise, each picture unlike the others. Chroma planes are rounded up, as in the file.
class Clip {
 public:
  using Picture = std::array<std::string, 3>;

  Clip(std::size_t width, std::size_t height) : width_(width), height_(height) {
    std::mt19937 noise(static_cast<unsigned>(width * height));
    for (auto& picture : pictures_) {
      for (std::size_t plane = 0; plane < picture.size(); ++plane) {
        picture[plane].resize(Columns(plane) * (plane == 0 ? height_ : (height_ + 1) / 2));
        std::generate(picture[plane].begin(), picture[plane].end(), [&] { return static_cast<char>(noise()); });
      }
    }
  }

  void Write(const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    file << "YUV4MPEG2 W" << width_ << " H" << height_ << " F30:1 C420jpeg\n";
    for (const auto& picture : pictures_) file << "FRAME\n" << picture[0] << picture[1] << picture[2];
  }

  [[nodiscard]] std::size_t Columns(std::size_t plane) const { return plane == 0 ? width_ : (width_ + 1) / 2; }
  // Which picture the frame shows, its padding apart; -1 for none.
  [[nodiscard]] int Find(const Frame& frame) const {
    const auto shown = std::ranges::find_if(pictures_, [&](const Picture& picture) { return Shows(frame, picture); });
    return shown == pictures_.end() ? -1 : static_cast<int>(shown - pictures_.begin());
  }

 private:
  [[nodiscard]] bool Shows(const Frame& frame, const Picture& picture) const {
    for (unsigned plane = 0; plane < picture.size(); ++plane) {
      const auto bytes = frame.Plane(plane);
      for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t column = i % frame.strides[plane];
        if (column >= Columns(plane)) continue;
        const char expected = picture[plane][i / frame.strides[plane] * Columns(plane) + column];
        if (bytes[i] != static_cast<std::uint8_t>(expected)) return false;
      }
    }
    return true;
  }

  const std::size_t width_;
  const std::size_t height_;
  std::array<Picture, 12> pictures_;
};

struct Shape {
  const char* userId;
  std::size_t width;
  std::size_t height;
  std::size_t strideExtra;
  // What the slot holds; of an odd height the last row of chroma stays away, by half where a stride is even.
  std::array<std::size_t, 3> planeBytes;
};

constexpr Shape kShapes[] = {
    {"even", 64, 48, 0, {3072, 768, 768}},
    {"odd", 35, 27, 0, {945, 243, 243}},
    {"padded", 64, 48, 16, {3840, 1152, 1152}},
    {"oddpadded", 35, 27, 13, {1296, 418, 418}},
    {"large", 1280, 720, 0, {921600, 230400, 230400}},
};

class FrameTest : public ServerTest {
 protected:
  const support::TempFolder clips_;
};

TEST_F(FrameTest, FramesComeOutBitForBitAsTheyWentIn) {
  std::string participants;
  for (const Shape& shape : kShapes) {
    const std::string file = clips_.Text() + "/" + shape.userId + ".y4m";
    Clip(shape.width, shape.height).Write(file);
    participants += participants.empty() ? "" : ",";
    participants += R"({"userId":")" + std::string(shape.userId) + R"(","video":)" + Quoted(file) +
                    R"(,"strideExtra":)" + std::to_string(shape.strideExtra) + R"(,"encodings":[{"width":)" +
                    std::to_string(shape.width) + R"(,"height":)" + std::to_string(shape.height) + "}]}";
  }
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(participants));
  for (std::size_t i = 0; i < std::size(kShapes); ++i)
    Expect("STREAM_ADDED");  // a wish for an unknown stream asks for nothing
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(shape.userId);
    const std::string sid = std::string(shape.userId) + "_0";
    const Clip clip(shape.width, shape.height);
    Subscribe(sid);
    std::set<int> seen;
    while (seen.size() < 6 && !HasFailure()) {
      const Frame frame = ReadFrame(sid);
      EXPECT_EQ(frame.width, shape.width);
      EXPECT_EQ(frame.height, shape.height);
      for (unsigned plane = 0; plane < shape.planeBytes.size(); ++plane) {
        EXPECT_EQ(frame.strides[plane], clip.Columns(plane) + shape.strideExtra);
        EXPECT_EQ(frame.Plane(plane).size(), shape.planeBytes[plane]);
      }
      const int picture = clip.Find(frame);
      EXPECT_GE(picture, 0);
      seen.insert(picture);
    }
  }
}

TEST_F(FrameTest, FramesFollowAStreamThroughChangesOfSize) {
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(
      R"({"userId":"ann","encodings":[{"width":64,"height":48}],"changes":[{"afterFrames":10,"width":320,"height":180},)"
      R"({"afterFrames":40,"width":33,"height":17},{"afterFrames":70,"strideExtra":64}]})"));
  Expect("STREAM_ADDED");
  Subscribe("ann_0");
  // A slow reader may miss a shape; it never sees one that was not sent, or one that is over.
  const std::vector<std::array<std::uint32_t, 3>> sent = {{64, 48, 64}, {320, 180, 320}, {33, 17, 33}, {33, 17, 97}};
  for (auto current = sent.begin(); current != sent.end() - 1;) {
    const Frame frame = ReadFrame("ann_0");
    ASSERT_FALSE(HasFailure());
    EXPECT_EQ(frame.Plane(0).size(), std::size_t{frame.height} * frame.strides[0]);
    current = std::find(current, sent.end(), std::array{frame.width, frame.height, frame.strides[0]});
    ASSERT_NE(current, sent.end());
  }
}

}  // namespace
}  // namespace integration
