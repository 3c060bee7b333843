#include "Picture.h"

#include <algorithm>

namespace sim {
namespace {

// What lies in the padding of a row, so that a reader that ignores strides shows it.
constexpr std::uint8_t kPaddingByte = 0xEE;

void CopyPlane(const Plane& from, Plane& to) {
  const bool sameWidth = from.width == to.width;
  for (int y = 0; y < to.height; ++y) {
    const auto source = from.Row(static_cast<int>(std::int64_t{y} * from.height / to.height));
    const auto target = to.Row(y);
    if (sameWidth) {
      std::copy(source.begin(), source.end(), target.begin());
      continue;
    }
    for (int x = 0; x < to.width; ++x) {
      const auto index = static_cast<std::size_t>(std::int64_t{x} * from.width / to.width);
      target[static_cast<std::size_t>(x)] = source[index];
    }
  }
}

}  // namespace

void Plane::Resize(int newWidth, int newHeight, int newStrideBytes) {
  if (width == newWidth && height == newHeight && strideBytes == newStrideBytes) return;
  width = newWidth;
  height = newHeight;
  strideBytes = newStrideBytes;
  bytes.assign(static_cast<std::size_t>(strideBytes) * static_cast<std::size_t>(height), kPaddingByte);
}

std::span<std::uint8_t> Plane::Row(int y) {
  return std::span(bytes).subspan(static_cast<std::size_t>(y) * static_cast<std::size_t>(strideBytes),
                                  static_cast<std::size_t>(width));
}

std::span<const std::uint8_t> Plane::Row(int y) const {
  return std::span(bytes).subspan(static_cast<std::size_t>(y) * static_cast<std::size_t>(strideBytes),
                                  static_cast<std::size_t>(width));
}

void Picture::Resize(int newWidth, int newHeight, int paddingBytes) {
  width = newWidth;
  height = newHeight;
  const int chromaWidth = (width + 1) / 2;
  const int chromaHeight = (height + 1) / 2;
  planes[0].Resize(width, height, width + paddingBytes);
  planes[1].Resize(chromaWidth, chromaHeight, chromaWidth + paddingBytes);
  planes[2].Resize(chromaWidth, chromaHeight, chromaWidth + paddingBytes);
}

void CopyScaled(const Picture& from, Picture& to) {
  for (std::size_t i = 0; i < from.planes.size(); ++i) CopyPlane(from.planes[i], to.planes[i]);
}

}  // namespace sim
