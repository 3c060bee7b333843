#pragma once

#include <array>
#include <cstdint>

namespace sim {

constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 7;

// Seven rows from the top; of a row the low five bits count, the leftmost pixel being the highest of them.
using Glyph = std::array<std::uint8_t, kGlyphHeight>;

// Letters, digits and some marks; small letters look like capitals, and what the font lacks is a box.
[[nodiscard]] const Glyph& GlyphOf(char character);

}  // namespace sim
