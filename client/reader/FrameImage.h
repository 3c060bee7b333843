#pragma once

#include <cstdint>
#include <vector>

#include "Frame.h"

// Frames of three planes as plain pictures. Rotation and flip are left to the viewer. The functions give an empty
// vector for frames of another format, and for those whose strides are too small for their width.
namespace ravo::client {

// The three planes without padding: width x height, then twice ((width + 1) / 2) x ((height + 1) / 2). Slots round the
// chroma planes down, so that with an odd height the last chroma row is not there; the row above stands in for it.
[[nodiscard]] std::vector<std::uint8_t> TightI420(const Frame& frame);

// Red, green and blue bytes, width x height x 3. Takes the colours as BT.601 in video range.
[[nodiscard]] std::vector<std::uint8_t> RgbFromFrame(const Frame& frame);

}  // namespace ravo::client
