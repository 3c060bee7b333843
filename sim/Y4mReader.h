#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include "Picture.h"

namespace sim {

// Reads a Y4M file, 8-bit 4:2:0 of any size, frame by frame and round and round. Belongs to one thread.
class Y4mReader {
 public:
  // Fails with a std::runtime_error that names the file and what is wrong with it: it cannot be opened, it is no Y4M
  // file, its samples are of another kind, or it holds no whole frame. The path is UTF-8.
  explicit Y4mReader(const std::string& path);

  // Reads the next frame; after the last whole one comes the first again.
  void Next(Picture& picture);

  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return height_; }

 private:
  void ParseHeader(const std::string& header);
  void ParseTag(std::string_view tag);
  bool ReadFrame(Picture& picture);
  [[noreturn]] void Fail(std::string_view what) const;

  std::string path_;
  std::ifstream file_;
  std::streampos firstFrame_;
  int width_ = 0;
  int height_ = 0;
};

}  // namespace sim
