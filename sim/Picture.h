#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sim {

// One plane of 8-bit samples; rows lie `strideBytes` apart.
struct Plane {
  int width = 0;
  int height = 0;
  int strideBytes = 0;
  std::vector<std::uint8_t> bytes;

  void Resize(int newWidth, int newHeight, int newStrideBytes);
  [[nodiscard]] std::span<std::uint8_t> Row(int y);
  [[nodiscard]] std::span<const std::uint8_t> Row(int y) const;
};

// A planar 4:2:0 picture: Y, U, V. The chroma planes of an odd size are rounded up, so that no sample is lost. Plain
// values; belongs to whoever holds it.
struct Picture {
  int width = 0;
  int height = 0;
  std::array<Plane, 3> planes;

  // Keeps the memory if it suffices; the samples are undefined afterwards. `paddingBytes` follow each row.
  void Resize(int newWidth, int newHeight, int paddingBytes = 0);
  [[nodiscard]] int PaddingBytes() const { return planes[0].strideBytes - planes[0].width; }
};

// Copies `from` into `to`, which keeps its size and strides; nearest sample where the sizes differ.
void CopyScaled(const Picture& from, Picture& to);

}  // namespace sim
