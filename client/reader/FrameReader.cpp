#include "FrameReader.h"

#include <cstring>
#include <thread>
#include <utility>

#include "SlotView.h"

namespace ravo::client {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// Long against the few stores for which a writer shows the next frame's layout with the present pixels, short against
// the time between two frames.
constexpr milliseconds kSettle{5};

// Apart from the render time, the words that can be one frame ahead of the pixels.
bool SameLayout(const ravo_frame_header& a, const ravo_frame_header& b) {
  return a.width == b.width && a.stride1 == b.stride1 && a.stride2 == b.stride2 && a.rotation == b.rotation &&
         a.flip == b.flip && a.colorSpace == b.colorSpace;
}

}  // namespace

std::span<const std::uint8_t> Frame::Plane(unsigned plane) const {
  ravo_frame_header header{};
  header.height = height;
  header.stride0 = strides[0];
  header.stride1 = strides[1];
  header.stride2 = strides[2];
  header.format = format;
  if (ravo_frame_data_bytes(&header, data.size()) == UINT64_MAX) return {};
  std::size_t offset = 0;
  for (unsigned i = 0; i < plane; ++i) offset += static_cast<std::size_t>(ravo_frame_plane_bytes(&header, i));
  return std::span(data).subspan(offset, static_cast<std::size_t>(ravo_frame_plane_bytes(&header, plane)));
}

std::unique_ptr<FrameReader> FrameReader::Open(const std::string& path, std::string& error, Event event) {
  const char* suffix = event == Event::Main ? RAVO_SLOT_MAIN_SUFFIX : RAVO_SLOT_SIDE_SUFFIX;
  auto view = SlotView::Open(path, RAVO_SLOT_EVENT_PREFIX + path + suffix, error);
  if (!view) return nullptr;
  if (view->SizeBytes() < RAVO_SLOT_HEADER_BYTES) {
    error = path + ": the segment has no room for a header";
    return nullptr;
  }
  return std::unique_ptr<FrameReader>(new FrameReader(std::move(view)));
}

FrameReader::FrameReader(std::unique_ptr<SlotView> view) : view_(std::move(view)) {}

FrameReader::~FrameReader() = default;

FrameReader::Outcome FrameReader::Next(Frame& out, milliseconds timeout) {
  const auto deadline = steady_clock::now() + timeout;
  while (true) {
    const Attempt attempt = TryTake(out);
    if (attempt == Attempt::Taken) return Outcome::Frame;
    if (attempt == Attempt::Broken) return Outcome::Broken;
    // Whatever came in between, the event tells: the writer sets it after each frame.
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
    if (left <= milliseconds::zero() || !view_->Wait(left)) return Outcome::TimedOut;
  }
}

FrameReader::Attempt FrameReader::TryTake(Frame& out) {
  ravo_frame_header header;
  const int begun = ravo_slot_begin(view_->Data(), view_->SizeBytes(), &header);
  if (begun == RAVO_SLOT_BAD) return StaysUnchanged(header) ? Attempt::Broken : Attempt::NotYet;
  if (begun != RAVO_SLOT_OK || (any_ && header.counter == lastCounter_)) return Attempt::NotYet;

  const std::size_t bytes = static_cast<std::size_t>(ravo_frame_data_bytes(&header, view_->SizeBytes()));
  copy_.resize(bytes);
  if (bytes != 0) std::memcpy(copy_.data(), view_->Data() + RAVO_SLOT_HEADER_BYTES, bytes);
  if (!ravo_slot_unchanged(view_->Data(), &header) || !Settled(header)) {
    ++counts_.torn;
    return Attempt::NotYet;
  }
  HandOut(header, out);
  return Attempt::Taken;
}

// A layout that was not seen before is believed only at a second look. If that fails, the layout was the next frame's,
// or the next frame has come: either way one that shows it again is believed.
bool FrameReader::Settled(const ravo_frame_header& header) {
  if (SameLayout(header, known_)) return true;
  known_ = header;
  return StaysUnchanged(header);
}

bool FrameReader::StaysUnchanged(const ravo_frame_header& header) const {
  std::this_thread::sleep_for(kSettle);
  return ravo_slot_unchanged(view_->Data(), &header) != 0;
}

void FrameReader::HandOut(const ravo_frame_header& header, Frame& out) {
  ++counts_.frames;
  if (any_) counts_.missed += header.counter - lastCounter_ - 1u;
  any_ = true;
  lastCounter_ = header.counter;
  out.counter = header.counter;
  out.width = header.width;
  out.height = header.height;
  out.strides = {header.stride0, header.stride1, header.stride2};
  out.rotation = header.rotation;
  out.flip = header.flip != 0;
  out.renderTimeMs = header.renderTimeMs;
  out.format = header.format;
  out.colorSpace = header.colorSpace;
  out.data.swap(copy_);
}

}  // namespace ravo::client
