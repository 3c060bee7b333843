#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace ravo::client {

// One frame, copied out of its slot. `data` holds the planes one behind the other, with their strides; what they are
// says ravo/frame_slot.h.
struct Frame {
  std::uint32_t counter = 0;  // within the slot
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::array<std::uint32_t, 3> strides{};
  std::uint32_t rotation = 0;
  bool flip = false;
  std::uint32_t renderTimeMs = 0;
  std::uint32_t format = 0;
  std::uint32_t colorSpace = 0;
  std::vector<std::uint8_t> data;

  // The bytes of plane 0, 1 or 2; empty for one that the format does not have.
  [[nodiscard]] std::span<const std::uint8_t> Plane(unsigned plane) const;
};

}  // namespace ravo::client
