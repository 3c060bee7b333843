// Frame slots from announcement to end, and pictures from a file through the engine, the slot and the reader: every
// byte.
#include <algorithm>
#include <array>
#include <fstream>
#include <set>

#include "ServerTest.h"
#include "common/JsonWriter.h"

namespace integration {
namespace {

using ravo::client::Frame;
using namespace testing;

// A clip whose samples tell where they are. Chroma planes are rounded up, as in the file.
struct Clip {
  static constexpr int kPictures = 12;

  std::size_t width;
  std::size_t height;

  [[nodiscard]] std::size_t Columns(unsigned plane) const { return plane == 0 ? width : (width + 1) / 2; }
  static std::uint8_t Sample(int picture, unsigned plane, std::size_t row, std::size_t column) {
    return static_cast<std::uint8_t>(picture * 7 +
                                     static_cast<int>(plane * 101 + row * 31 + row / 8 + column * 13 + column / 64));
  }

  void Write(const std::string& path) const {
    std::ofstream file(path, std::ios::binary);
    file << "YUV4MPEG2 W" << width << " H" << height << " F30:1 Ip A1:1 C420jpeg XANY=1\n";
    for (int picture = 0; picture < kPictures; ++picture) {
      file << (picture == 0 ? "FRAME Ip\n" : "FRAME\n");
      for (const unsigned plane : {0u, 1u, 2u}) {
        const std::size_t rows = plane == 0 ? height : (height + 1) / 2;
        for (std::size_t i = 0; i < rows * Columns(plane); ++i) {
          file.put(static_cast<char>(Sample(picture, plane, i / Columns(plane), i % Columns(plane))));
        }
      }
    }
    file << "FRAME\ncut";
  }

  // Whether the frame shows this picture so many times as wide, its padding apart.
  [[nodiscard]] bool Shows(const Frame& frame, int picture, std::size_t stretch) const {
    for (const unsigned plane : {0u, 1u, 2u}) {
      const auto bytes = frame.Plane(plane);
      for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t column = i % frame.strides[plane];
        const std::size_t row = i / frame.strides[plane];
        if (column >= Columns(plane) * stretch) continue;
        if (bytes[i] != Sample(picture, plane, row, column / stretch)) return false;
      }
    }
    return true;
  }
};

struct Shape {
  const char* userId;
  Clip clip;
  std::size_t strideExtra;
  std::size_t stretch;
  // What the slot holds; of an odd height the last row of chroma stays away, by half where a stride is even.
  std::array<std::size_t, 3> planeBytes;
};

constexpr Shape kShapes[] = {
    {"odd", {35, 27}, 0, 1, {945, 243, 243}},
    {"padded", {35, 27}, 13, 1, {1296, 418, 418}},
    {"stretched", {64, 48}, 0, 2, {6144, 1536, 1536}},
    {"large", {1280, 720}, 0, 1, {921600, 230400, 230400}},
};

class FrameTest : public ServerTest {};

TEST_F(FrameTest, FramesComeOutBitForBitAsTheyWentIn) {
  const support::TempFolder clips;
  std::string participants;
  for (const auto& [userId, clip, strideExtra, stretch, planeBytes] : kShapes) {
    const std::string file = clips.Text() + "/" + userId + ".y4m";
    clip.Write(file);
    participants += participants.empty() ? "" : ",";
    participants += R"({"userId":")" + std::string(userId) + R"(","video":)" + Quoted(file) + R"(,"strideExtra":)" +
                    std::to_string(strideExtra) + R"(,"encodings":[{"width":)" + std::to_string(clip.width * stretch) +
                    R"(,"height":)" + std::to_string(clip.height) + "}]}";
  }
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(participants));
  for (std::size_t i = 0; i < std::size(kShapes); ++i) Expect("STREAM_ADDED");
  for (const auto& [userId, clip, strideExtra, stretch, planeBytes] : kShapes) {
    SCOPED_TRACE(userId);
    const std::string sid = std::string(userId) + "_0";
    Subscribe(sid);
    std::set<int> seen;
    while (seen.size() < 6 && !HasFailure()) {
      const Frame frame = ReadFrame(sid);
      EXPECT_EQ(frame.width, clip.width * stretch);
      EXPECT_EQ(frame.height, clip.height);
      for (unsigned plane = 0; plane < planeBytes.size(); ++plane) {
        EXPECT_EQ(frame.strides[plane], clip.Columns(plane) * stretch + strideExtra);
        EXPECT_EQ(frame.Plane(plane).size(), planeBytes[plane]);
      }
      int picture = 0;
      while (picture < Clip::kPictures && !clip.Shows(frame, picture, stretch)) ++picture;
      EXPECT_LT(picture, Clip::kPictures);
      seen.insert(picture);
    }
  }
}

TEST_F(FrameTest, FramesFollowAStreamThroughChangesOfSize) {
  ASSERT_NO_FATAL_FAILURE(
      WatchAnn(R"("encodings":[{"width":64,"height":48}],"changes":[{"afterFrames":10,"width":320,"height":180},)"
               R"({"afterFrames":40,"width":33,"height":17},{"afterFrames":70,"strideExtra":64}])"));
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

TEST_F(FrameTest, ASlotIsAnnouncedWithItsFirstFrameAndEndsWithItsVideo) {
  hasTracker_ = false;
  ASSERT_NO_FATAL_FAILURE(WatchAnn(R"("encodings":[{"width":64,"height":48}])"));
  const SlotUpdate added = NextUpdate("ann_0");
  EXPECT_EQ(added.operation, 0);
  const std::string record = TESSARIN_COMMON::JsonText(added.slots);
  EXPECT_EQ(record, R"([{"sid":"ann_0","uid":"ann","bufferSize":4660,"isScreen":false,"path":)" +
                        Quoted(added.slots[0].path) +
                        R"(,"bufferNumber":1,"isMerge":false,"frameFormat":0,"width":64,"height":48,"rotation":0,)"
                        R"("flip":false}])");
  EXPECT_EQ(Call("GetShareMemoryInfo"), record);
  // The stream goes on while the engine says that it is subscribed without video.
  SetParams(R"("sim.fire":[{"entry":"OnStreamSubscribed","args":[0,"ann_0",{"subscribeAudio":true}]}])");
  EXPECT_EQ(NextUpdate("ann_0").operation, 1);
  const SlotUpdate repeated = NextUpdate("ann_0");  // with each frame until it is acknowledged
  EXPECT_EQ(repeated.operation, 1);
  Call("AckShareMemoryUpdate", "[1," + TESSARIN_COMMON::JsonText(repeated.slots) + "]");
  const std::string dropped = "streaminfo hasvideo = false, but received frame, sid = ann_0";
  EXPECT_TRUE(server_->WaitForLog(dropped, server_->LogLines(dropped).size() + 10));
  EXPECT_EQ(Call("GetShareMemoryInfo"), "[]");
  while (const auto event = session_->WaitEvent("SHARE_MEMORY_UPDATE", std::chrono::milliseconds(0))) {
    EXPECT_THAT(event->content, StartsWith("[1,"));
  }
}

}  // namespace
}  // namespace integration
