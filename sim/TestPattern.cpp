#include "TestPattern.h"

#include <algorithm>
#include <cstdio>

#include "Font.h"
#include "common/Fnv1a.h"

namespace sim {
namespace {

constexpr int kBandPeriod = 128;
constexpr int kStepsPerFrame = 4;
constexpr int kMargin = 2;         // around the panel's text, in pixels of the font
constexpr int kShortestLine = 12;  // characters that always fit across the picture
constexpr std::uint8_t kPanelDark = 24;
constexpr std::uint8_t kPanelBright = 232;

void FillRect(Plane& plane, int left, int top, int width, int height, std::uint8_t value) {
  const int right = std::min(left + width, plane.width);
  const int bottom = std::min(top + height, plane.height);
  if (left >= right) return;
  for (int y = top; y < bottom; ++y) {
    const auto row = plane.Row(y);
    std::fill(row.begin() + left, row.begin() + right, value);
  }
}

void DrawGlyph(Plane& plane, const Glyph& glyph, int left, int top, int scale) {
  for (int row = 0; row < kGlyphHeight; ++row) {
    for (int column = 0; column < kGlyphWidth; ++column) {
      const bool set = (glyph[static_cast<std::size_t>(row)] >> (kGlyphWidth - 1 - column) & 1) != 0;
      if (set) FillRect(plane, left + column * scale, top + row * scale, scale, scale, kPanelBright);
    }
  }
}

void DrawText(Plane& plane, std::string_view text, int left, int top, int scale) {
  for (const char character : text) {
    DrawGlyph(plane, GlyphOf(character), left, top, scale);
    left += (kGlyphWidth + 1) * scale;
  }
}

std::string TimeText(std::int64_t timeMs) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d.%03d", static_cast<int>(timeMs / 60000 % 60),
                static_cast<int>(timeMs / 1000 % 60), static_cast<int>(timeMs % 1000));
  return text;
}

}  // namespace

TestPattern::TestPattern(std::string userId) : userId_(std::move(userId)) {
  const std::uint32_t hash = TESSARIN_COMMON::Fnv1a(userId_);
  u_ = static_cast<std::uint8_t>(64 + (hash & 0x7F));
  v_ = static_cast<std::uint8_t>(64 + (hash >> 8 & 0x7F));
}

void TestPattern::Draw(std::int64_t frameNumber, std::int64_t timeMs, Picture& picture) {
  DrawBands(frameNumber, picture.planes[0]);
  DrawPanel(frameNumber, timeMs, picture.planes[0]);
  for (int y = 0; y < picture.planes[1].height; ++y) {
    std::ranges::fill(picture.planes[1].Row(y), u_);
    std::ranges::fill(picture.planes[2].Row(y), v_);
  }
}

void TestPattern::DrawBands(std::int64_t frameNumber, Plane& luma) {
  const auto needed = static_cast<std::size_t>(luma.width) + kBandPeriod;
  for (std::size_t i = band_.size(); i < needed; ++i) {
    const int phase = static_cast<int>(i) % kBandPeriod;
    band_.push_back(static_cast<std::uint8_t>(48 + std::min(phase, kBandPeriod - phase) * 2));
  }
  for (int y = 0; y < luma.height; ++y) {
    const auto shift = static_cast<std::ptrdiff_t>((frameNumber * kStepsPerFrame + y) % kBandPeriod);
    std::copy_n(band_.begin() + shift, luma.width, luma.Row(y).begin());
  }
}

void TestPattern::DrawPanel(std::int64_t frameNumber, std::int64_t timeMs, Plane& luma) const {
  const std::string lines[] = {userId_, "#" + std::to_string(frameNumber), TimeText(timeMs)};
  std::size_t longest = kShortestLine;
  for (const auto& line : lines) longest = std::max(longest, line.size());
  const int columns = static_cast<int>(longest) * (kGlyphWidth + 1) + 2 * kMargin;
  const int lineHeight = kGlyphHeight + kMargin;
  const int rows = static_cast<int>(std::size(lines)) * lineHeight + 2 * kMargin;
  const int scale = std::max(1, std::min(luma.width * 2 / 3 / columns, luma.height / 2 / rows));
  FillRect(luma, 0, 0, columns * scale, rows * scale, kPanelDark);
  int top = kMargin * scale;
  for (const auto& line : lines) {
    DrawText(luma, line, kMargin * scale, top, scale);
    top += lineHeight * scale;
  }
}

}  // namespace sim
