// A slot whose writer is hostile. The first word is the segment's size, the rest what is written into it: once before
// the reader looks, and again whenever it pauses.
#include <algorithm>
#include <cstring>
#include <ctime>
#include <vector>

#include "Fuzzer.h"
#include "reader/FrameImage.h"
#include "reader/FrameReader.h"
#include "reader/SlotView.h"

namespace {

std::vector<std::uint8_t> segment;
std::string_view writes;

// The next write: a header, then pixels.
bool Write() {
  const std::size_t count = std::min({writes.size(), segment.size(), std::size_t{96}});
  if (count == 0) return false;
  std::memcpy(segment.data(), writes.data(), count);
  writes.remove_prefix(count);
  return true;
}

}  // namespace

extern "C" int __wrap_nanosleep(const timespec*, timespec*) {
  Write();
  return 0;
}

// The reader's view of the segment above, in place of those of the systems.
namespace ravo::client {

struct SlotView::Handles {};
SlotView::SlotView() = default;
SlotView::~SlotView() = default;

std::unique_ptr<SlotView> SlotView::Open(const std::string&, const std::string&, std::string&) {
  std::unique_ptr<SlotView> view(new SlotView);
  view->data_ = segment.data();
  view->sizeBytes_ = segment.size();
  return view;
}

bool SlotView::Wait(std::chrono::milliseconds) {
  return Write();
}

}  // namespace ravo::client

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ravo::client;
  if (size < 2) return 0;
  segment = std::vector<std::uint8_t>(std::size_t{data[0]} | std::size_t{data[1]} << 8);  // no byte more
  writes = fuzz::Text(data + 2, size - 2);
  Write();
  std::string error;
  const auto reader = FrameReader::Open("", error);
  Frame frame;
  while (reader && reader->Next(frame, std::chrono::hours(1)) == FrameReader::Outcome::Frame) {
    fuzz::Expect(frame.data.size() <= segment.size(), "a frame lies within its segment");
    for (unsigned plane = 0; plane < 3; ++plane) {
      const auto bytes = frame.Plane(plane);
      static_cast<void>(std::count(bytes.begin(), bytes.end(), std::uint8_t{0}));
    }
    static_cast<void>(RgbFromFrame(frame));
  }
  return 0;
}
