#include "reader/FrameReader.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>
#include <tuple>

#include "SlotFixture.h"

extern "C" int CopySlotFromC(const void* buffer, std::size_t bufferBytes, void* data, std::size_t dataBytes,
                             ravo_frame_header* header);

namespace {

using namespace slots_test;
using ravo::client::Frame;
using ravo::client::FrameReader;
using std::chrono::milliseconds;
using Outcome = FrameReader::Outcome;

constexpr milliseconds kBound{10'000};

struct FrameReaderTest : SlotFixture {
  std::unique_ptr<FrameReader> Open(FrameReader::Event event = FrameReader::Event::Main) {
    std::string error;
    return FrameReader::Open(PathOf(), error, event);
  }
};

TEST_F(FrameReaderTest, HandsOutEachFrameOnceWithItsPlanes) {
  TestFrame frame(8, 2, 1, 4);
  frame.meta.rotation = 90;
  frame.meta.renderTimeMs = 1234;
  Send(frame);
  const auto reader = Open();
  const auto side = Open(FrameReader::Event::Side);
  Frame out;
  ASSERT_EQ(reader->Next(out, kBound), Outcome::Frame);
  EXPECT_EQ(std::tuple(out.width, out.rotation, out.renderTimeMs), std::tuple(8u, 90u, 1234u));
  EXPECT_EQ(out.Plane(0).size(), 24u);
  EXPECT_EQ(out.Plane(1).size(), 8u);
  EXPECT_EQ(out.Plane(2).data(), out.data.data() + 32);
  EXPECT_EQ(reader->Next(out, milliseconds(1)), Outcome::TimedOut);

  for (int i = 0; i < 3; ++i) Send(frame);
  ASSERT_EQ(reader->Next(out, kBound), Outcome::Frame);
  EXPECT_EQ(out.counter, 3u);
  EXPECT_EQ(reader->GetCounts().missed, 2u);
  EXPECT_EQ(side->Next(out, kBound), Outcome::Frame);  // the two events are independent
}

// The reader stops in the middle of its copy, and the writer goes on.
TEST_F(FrameReaderTest, TellsACopyThatWasOvertakenFromAWholeOne) {
  TestFrame frame(64, 64, 1);
  Send(frame);
  const auto size = static_cast<std::uint32_t>(last.bufferSize);
  shoom::Shm view(PathOf(), size);
  ASSERT_EQ(view.Create(false), 0);
  ravo_frame_header header;
  ASSERT_EQ(ravo_slot_begin(view.Data(), size, &header), RAVO_SLOT_OK);
  EXPECT_TRUE(ravo_slot_unchanged(view.Data(), &header));
  frame.Fill(2);
  Send(frame);
  EXPECT_FALSE(ravo_slot_unchanged(view.Data(), &header));

  std::vector<std::uint8_t> data(size - RAVO_SLOT_HEADER_BYTES);
  EXPECT_EQ(CopySlotFromC(view.Data(), size, data.data(), data.size(), &header), RAVO_SLOT_OK);
  EXPECT_EQ(std::count(data.begin(), data.end(), 2), static_cast<std::ptrdiff_t>(data.size()));
  EXPECT_EQ(CopySlotFromC(view.Data(), size, data.data(), data.size() - 1, &header), RAVO_SLOT_SMALL);
}

TEST(FrameSlotHeader, NeverLetsAReaderLeaveTheSegment) {
  alignas(4) std::uint8_t buffer[RAVO_SLOT_HEADER_BYTES + 24] = {};
  ravo_frame_header header{};
  const auto begin = [&](std::uint32_t state, std::uint32_t height, std::uint32_t stride0, std::uint32_t stride2) {
    header = {};
    header.state = state;
    header.height = height;
    header.stride0 = stride0;
    header.stride2 = stride2;
    std::memcpy(buffer, &header, sizeof header);
    return ravo_slot_begin(buffer, sizeof buffer, &header);
  };
  EXPECT_EQ(begin(2, 2, 8, 8), RAVO_SLOT_OK);  // 16 + 0 + 8
  EXPECT_EQ(begin(0, 2, 8, 8), RAVO_SLOT_BUSY);
  EXPECT_EQ(begin(1, 2, 8, 8), RAVO_SLOT_BUSY);
  EXPECT_EQ(begin(2, 2, 8, 9), RAVO_SLOT_BAD);
  EXPECT_EQ(begin(2, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF), RAVO_SLOT_BAD);
  EXPECT_EQ(begin(2, 0x80000000, 2, 0), RAVO_SLOT_BAD);  // 2^32
  EXPECT_EQ(ravo_slot_begin(buffer, RAVO_SLOT_HEADER_BYTES - 1, &header), RAVO_SLOT_BAD);
}

// Two mappings. The writer sends frames in bursts without a pause, so that they overtake copies, and lets the reader
// have the last one: whatever is handed out is of one frame.
TEST_F(FrameReaderTest, NeverHandsOutAMixtureUnderLoad) {
  std::vector<TestFrame> frames;  // of the values 0 to 3, by the frame's number
  for (std::uint8_t value = 0; value < 4; ++value) frames.emplace_back(1920, 1080, value);
  Send(frames[0]);
  const auto reader = Open();
  std::atomic<std::uint32_t> seen{0};
  std::atomic<bool> stop{false};
  std::thread writer([&] {
    for (std::uint32_t i = 1; !stop;) {
      for (const std::uint32_t end = i + 4; i < end; ++i) Send(frames[i % 4]);
      while (seen != i - 1 && !stop) std::this_thread::yield();
    }
  });
  Frame out;
  while (reader->GetCounts().frames < 150 && reader->Next(out, kBound) == Outcome::Frame) {
    const std::vector<std::uint8_t> expected(out.data.size(), static_cast<std::uint8_t>(out.counter % 4));
    EXPECT_TRUE(out.data == expected) << "a mixture at frame " << out.counter;
    seen = out.counter;
  }
  stop = true;
  writer.join();
  EXPECT_EQ(reader->GetCounts().frames, 150u);
  EXPECT_GT(reader->GetCounts().torn + reader->GetCounts().missed, 0u);  // there was something to catch
}

}  // namespace
