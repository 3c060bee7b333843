#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Picture.h"

namespace sim {

// Draws a moving picture: bands of brightness that travel, a colour of the user's own, and in a panel the user id, the
// number of the frame and its time. Belongs to one thread.
class TestPattern {
 public:
  explicit TestPattern(std::string userId);

  // Fills the picture, which keeps its size and strides. `timeMs` is shown as minutes, seconds and milliseconds.
  void Draw(std::int64_t frameNumber, std::int64_t timeMs, Picture& picture);

 private:
  void DrawBands(std::int64_t frameNumber, Plane& luma);
  void DrawPanel(std::int64_t frameNumber, std::int64_t timeMs, Plane& luma) const;

  std::string userId_;
  std::uint8_t u_;
  std::uint8_t v_;
  std::vector<std::uint8_t> band_;  // the brightness along a row, longer than the row by one period
};

}  // namespace sim
