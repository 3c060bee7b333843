#include "Files.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

#include <fstream>
#include <stdexcept>

#include "reader/FrameImage.h"

namespace ravo::ctl {

std::filesystem::path PathFromUtf8(const std::string& text) {
  return std::u8string(text.begin(), text.end());
}

void WritePng(const std::string& file, const client::Frame& frame) {
  const auto rgb = client::RgbFromFrame(frame);
  if (rgb.empty()) throw std::runtime_error("the frame has a format that is no picture");
  std::ofstream out(PathFromUtf8(file), std::ios::binary);
  const auto write = [](void* stream, void* data, int size) {
    static_cast<std::ofstream*>(stream)->write(static_cast<const char*>(data), size);
  };
  const int width = static_cast<int>(frame.width);
  stbi_write_png_to_func(write, &out, width, static_cast<int>(frame.height), 3, rgb.data(), width * 3);
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

}  // namespace ravo::ctl
