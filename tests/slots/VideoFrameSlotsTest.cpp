#include "slots/VideoFrameSlots.h"

#include "SlotFixture.h"
#include "support/LogCapture.h"

namespace {

using namespace slots_test;

using Texts = std::vector<std::string>;

class VideoFrameSlotsTest : public SlotFixture {
 protected:
  bool IsActive(const std::string& sid) const { return slots->Snapshot().at(sid).active; }
};

std::uint32_t WordAt(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(bytes[offset] | bytes[offset + 1] << 8 | bytes[offset + 2] << 16 |
                                    bytes[offset + 3] << 24);
}

TEST_F(VideoFrameSlotsTest, LaysTheFrameOutByteForByte) {
  const std::vector<std::uint8_t> y = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const std::vector<std::uint8_t> u = {21, 22, 23, 24};
  const std::vector<std::uint8_t> v = {31};
  // 3 rows of 4, half of 3 rows of 3, half of 3 rows of 1: the halves lose their odd byte.
  const FrameMeta meta{0, 0, 0, 0x01020304, 3, 4, 3, 1, 90, 1, 0xA0B0C0D0, 0, 7};

  slots->UpdateSlot("a", meta, std::vector<const std::uint8_t*>{y.data(), u.data(), v.data()});

  EXPECT_EQ(BytesOf(),
            (std::vector<std::uint8_t>{0,    0,    0,    0,     // counter
                                       2,    0,    0,    0,     // state
                                       0,    0,    0,    0,     // reserved
                                       4,    3,    2,    1,     // width
                                       3,    0,    0,    0,     // height
                                       4,    0,    0,    0,     // stride 0
                                       3,    0,    0,    0,     // stride 1
                                       1,    0,    0,    0,     // stride 2
                                       90,   0,    0,    0,     // rotation
                                       1,    0,    0,    0,     // flip
                                       0xD0, 0xC0, 0xB0, 0xA0,  // render time
                                       0,    0,    0,    0,     // format
                                       7,    0,    0,    0,     // colour space
                                       1,    2,    3,    4,    5, 6, 7, 8, 9, 10, 11, 12, 21, 22, 23, 24, 31}));
}

TEST_F(VideoFrameSlotsTest, ReservesAndCopiesWhatTheFormatHas) {
  const std::vector<std::uint8_t> plane(40, 9);
  const std::vector<const std::uint8_t*> planes = {plane.data(), plane.data(), plane.data()};
  const struct {
    std::uint32_t format, reserved, copied, stored, folded;
  } cases[] = {{0, 40, 40, 0, 0}, {1, 20, 20, 1, 1}, {2, 30, 30, 2, 2}, {3, 30, 0, 0, 2}, {77, 0, 0, 77, 0}};
  for (const auto& c : cases) {
    slots->DestroyAllSlots();
    slots->UpdateSlot("a", {0, 0, 5, 8, 2, 10, 10, 10, 0, 0, 0, c.format, 0}, planes);
    const auto bytes = BytesOf();
    EXPECT_EQ(bytes.size(), 52 + c.reserved) << c.format;
    EXPECT_EQ(WordAt(bytes, 8), 1u);
    EXPECT_EQ(WordAt(bytes, 44), c.stored) << c.format;
    EXPECT_EQ(std::count(bytes.begin() + 52, bytes.end(), 9), static_cast<std::ptrdiff_t>(c.copied)) << c.format;
    EXPECT_EQ(last.frameFormat, c.folded) << c.format;
  }
}

TEST_F(VideoFrameSlotsTest, NamesSlotsByStreamAndProcessAndNeverTwice) {
  const TestFrame frame(8, 2, 1);
  Send(frame);
  const std::string first = PathOf();
  slots->DestroySlot(RecordOf("a"));
  Send(frame);
  const std::string second = PathOf();

  EXPECT_TRUE(first.starts_with("3826002220_")) << first;  // FNV-1a of "a"
  const auto number = [](const std::string& path) { return std::stoull(path.substr(path.rfind('_') + 1)); };
  EXPECT_EQ(number(second), number(first) + 1);
  EXPECT_EQ(second.substr(0, second.rfind('_')), first.substr(0, first.rfind('_')));
}

TEST_F(VideoFrameSlotsTest, TakesOneFrameATickAndTheFirstAtOnce) {
  TestFrame frame(8, 2, 1);
  slots->UpdateSlot("a", frame.meta, frame.planes);
  EXPECT_EQ(BytesOf()[52], 1);
  frame.Fill(2);
  slots->UpdateSlot("a", frame.meta, frame.planes);
  EXPECT_EQ(BytesOf()[52], 1);
  Send(frame);
  EXPECT_EQ(BytesOf()[52], 2);
  EXPECT_EQ(WordAt(BytesOf(), 0), 1u);  // dropped frames do not count
}

TEST_F(VideoFrameSlotsTest, AnnouncesARotationInPlaceAndGoesOnInTheSameSegment) {
  TestFrame frame(8, 2, 1);
  Send(frame);
  const std::string path = PathOf();
  frame.meta.rotation = 90;
  frame.Fill(2);
  Send(frame);
  EXPECT_EQ(announced, (Texts{"0 a 8x2", "0 a 8x2"}));
  EXPECT_EQ(last.path, path);
  EXPECT_EQ(last.rotation, 90u);
  EXPECT_EQ(BytesOf()[52], 1);  // that frame is lost
  EXPECT_FALSE(IsActive("a"));

  Send(frame);
  EXPECT_EQ(BytesOf()[52], 2);
  EXPECT_EQ(WordAt(BytesOf(), 32), 90u);
  EXPECT_EQ(announced.size(), 2u);
}

TEST_F(VideoFrameSlotsTest, ChangesSizeByARoundTripThroughTheClient) {
  Send(TestFrame(8, 4, 1));
  const std::string path = PathOf();
  const TestFrame small(4, 2, 2);
  Send(small);
  EXPECT_EQ(last.path, path);
  Send(small);  // the client has not answered: what fits is still written
  EXPECT_EQ(BytesOf()[52], 2);
  EXPECT_EQ(announced, (Texts{"0 a 8x4", "1 a 4x2"}));

  slots->DestroySlot(last);
  EXPECT_EQ(shoom::Shm(path, 52).Create(false), 120);
  Send(small);
  EXPECT_EQ(announced.back(), "0 a 4x2");
  EXPECT_NE(last.path, path);
  EXPECT_EQ(last.bufferSize, 52u + 12u);
}

TEST_F(VideoFrameSlotsTest, RepeatsTheRemovalForEachFrameThatOutgrewTheSegment) {
  Send(TestFrame(8, 4, 1));
  const TestFrame padded(8, 4, 2, 16);
  Send(padded);
  Send(padded);
  const Texts expected{"0 a 8x4", "1 a 0x0", "1 a 0x0"};
  EXPECT_EQ(announced, expected);
  EXPECT_EQ(last.path, PathOf());
  EXPECT_FALSE(IsActive("a"));
  EXPECT_EQ(BytesOf()[52], 1);

  StreamDataManager::GetInstance().RemoveStream("a");
  Send(padded);  // nobody to tell
  EXPECT_EQ(announced, expected);
}

TEST_F(VideoFrameSlotsTest, RemembersTheNewGeometryEvenIfTheStreamIsGone) {
  const support::LogCapture log;
  Send(TestFrame(8, 4, 1));
  StreamDataManager::GetInstance().RemoveStream("a");
  Send(TestFrame(4, 4, 2));
  Send(TestFrame(4, 4, 3));
  EXPECT_EQ(announced.size(), 1u);
  EXPECT_TRUE(IsActive("a"));
  EXPECT_EQ(BytesOf()[52], 3);
  EXPECT_EQ(log.Count("[STREAM_FRAME] UpdateSlot-->width or height or rotate changed, find stream failed, sid = a"), 1);
}

TEST_F(VideoFrameSlotsTest, TakesBackTheOlderCameraSlotOfAUserButNoScreen) {
  AddStream("ann", "a2");
  AddStream("ann", "s", true);
  AddStream("bob", "b");
  for (const char* sid : {"a", "s", "b", "a2"}) Send(TestFrame(8, 2, 1), sid);
  EXPECT_EQ(announced, (Texts{"0 a 8x2", "0 s 8x2", "0 b 8x2", "1 a 8x2", "0 a2 8x2"}));
  EXPECT_FALSE(IsActive("a"));
  EXPECT_TRUE(IsActive("s") && IsActive("b") && IsActive("a2"));
}

TEST_F(VideoFrameSlotsTest, AnnouncesWithNoLockHeld) {
  AddStream("bob", "b");
  const TestFrame frame(8, 2, 1);
  onAnnounce = [&] {
    onAnnounce = nullptr;
    EXPECT_TRUE(slots->HasSlot("a"));
    Send(frame, "b");
    slots->DestroySlot(RecordOf("a"));
  };
  Send(frame);
  EXPECT_EQ(announced.size(), 2u);
  EXPECT_FALSE(slots->HasSlot("a"));
}

TEST_F(VideoFrameSlotsTest, MakesNoSlotForAnUnknownStreamAndSurvivesFramesThatMakeNoSense) {
  const TestFrame good(8, 2, 5);
  Send(good, "unknown");
  for (const std::uint32_t height : {0xFFFFFFFFu, 0x7FFFFFFFu}) {
    FrameMeta absurd = good.meta;
    absurd.height = height;
    absurd.stride0 = absurd.stride1 = absurd.stride2 = height;
    slots->UpdateSlot("a", absurd, good.planes);
  }
  EXPECT_TRUE(slots->Snapshot().empty());
  EXPECT_TRUE(announced.empty());
  Send(good);
  slots->Tick();
  slots->UpdateSlot("a", good.meta, std::vector<const std::uint8_t*>{nullptr, good.bytes.data()});
  EXPECT_EQ(WordAt(BytesOf(), 0), 1u);
  EXPECT_EQ(BytesOf()[52], 5);  // what is missing leaves its bytes alone
}

}  // namespace
