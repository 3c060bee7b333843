#include "FrameImage.h"

#include <ravo/frame_slot.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace ravo::client {
namespace {

constexpr std::uint8_t kNoColour = 128;

std::size_t Half(std::size_t size) {
  return size / 2 + size % 2;
}

struct Rows {
  std::span<const std::uint8_t> bytes;
  std::size_t stride;
  std::size_t width;
  std::size_t count;
};

// Appends the rows without their padding.
void AppendTight(const Rows& rows, std::vector<std::uint8_t>& out) {
  for (std::size_t row = 0; row < rows.count; ++row) {
    std::size_t at = row * rows.stride;
    if (at + rows.width > rows.bytes.size() && row > 0) at -= rows.stride;
    if (at + rows.width > rows.bytes.size()) {
      out.insert(out.end(), rows.width, kNoColour);  // a single row has no chroma row at all
    } else {
      const auto from = rows.bytes.begin() + static_cast<std::ptrdiff_t>(at);
      out.insert(out.end(), from, from + static_cast<std::ptrdiff_t>(rows.width));
    }
  }
}

std::uint8_t Clamp8(int value) {
  return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

void PutRgb(int y, int u, int v, std::uint8_t* rgb) {
  const int c = 298 * (y - 16) + 128;
  const int d = u - 128;
  const int e = v - 128;
  rgb[0] = Clamp8((c + 409 * e) >> 8);
  rgb[1] = Clamp8((c - 100 * d - 208 * e) >> 8);
  rgb[2] = Clamp8((c + 516 * d) >> 8);
}

}  // namespace

std::vector<std::uint8_t> TightI420(const Frame& frame) {
  const std::size_t width = frame.width;
  const std::size_t height = frame.height;
  const std::size_t chromaWidth = Half(width);
  const auto& strides = frame.strides;
  if (frame.format != RAVO_FRAME_I420 || width == 0 || height == 0 || strides[0] < width || strides[1] < chromaWidth ||
      strides[2] < chromaWidth || frame.Plane(0).empty()) {
    return {};
  }
  std::vector<std::uint8_t> out;
  out.reserve(width * height + 2 * chromaWidth * Half(height));
  AppendTight({frame.Plane(0), strides[0], width, height}, out);
  AppendTight({frame.Plane(1), strides[1], chromaWidth, Half(height)}, out);
  AppendTight({frame.Plane(2), strides[2], chromaWidth, Half(height)}, out);
  return out;
}

std::vector<std::uint8_t> RgbFromFrame(const Frame& frame) {
  const auto tight = TightI420(frame);
  if (tight.empty()) return {};
  const std::size_t width = frame.width;
  const std::size_t height = frame.height;
  const std::size_t chromaWidth = Half(width);
  const std::uint8_t* u = tight.data() + width * height;
  const std::uint8_t* v = u + chromaWidth * Half(height);
  std::vector<std::uint8_t> rgb(width * height * 3);
  for (std::size_t y = 0; y < height; ++y) {
    for (std::size_t x = 0; x < width; ++x) {
      const std::size_t chroma = y / 2 * chromaWidth + x / 2;
      PutRgb(tight[y * width + x], u[chroma], v[chroma], &rgb[(y * width + x) * 3]);
    }
  }
  return rgb;
}

}  // namespace ravo::client
