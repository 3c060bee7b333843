#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "Frame.h"

namespace ravo::client {

// Writes frames into a Y4M file, 8 bit 4:2:0, that any player takes. Belongs to one thread.
class Y4mWriter {
 public:
  // The file is made here, its header with the first frame. The rate is only a word in that header.
  explicit Y4mWriter(const std::filesystem::path& file, unsigned framesPerSecond = 30);

  // False if the file cannot be written, the frame has not the size of the first one, or is of another format.
  [[nodiscard]] bool Write(const Frame& frame);

 private:
  std::ofstream file_;
  const unsigned framesPerSecond_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
};

}  // namespace ravo::client
