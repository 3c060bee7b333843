#pragma once

#include <ravo/engine_records.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace bench {

// A picture of the engine's, in planes of its own.
struct Picture {
  Picture(std::int64_t width, std::int64_t height);

  [[nodiscard]] std::size_t SizeBytes() const { return sizes[0] + sizes[1] + sizes[2]; }
  // Three plain copies, one plane behind the other.
  void CopyTo(std::uint8_t* to) const {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      std::memcpy(to, pointers[i], sizes[i]);
      to += sizes[i];
    }
  }

  VideoFrameInfo info;
  std::array<std::int64_t, 3> strides;
  std::array<std::size_t, 3> sizes{};
  std::array<std::vector<std::uint8_t>, 3> planes;
  std::array<const std::uint8_t*, 3> pointers{};
};

// Where in memory a copy goes to moves its cost by a tenth, both ways. So each side of a comparison has several targets
// and takes them in turn.
constexpr std::size_t kTargets = 4;

struct PictureSize {
  const char* name;
  std::int64_t width;
  std::int64_t height;
};
constexpr std::array<PictureSize, 4> kPictureSizes{
    {{"640x360", 640, 360}, {"1280x720", 1280, 720}, {"1920x1080", 1920, 1080}, {"3840x2160", 3840, 2160}}};

}  // namespace bench
