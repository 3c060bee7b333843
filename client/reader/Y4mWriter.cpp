#include "Y4mWriter.h"

#include "FrameImage.h"

namespace ravo::client {

Y4mWriter::Y4mWriter(const std::filesystem::path& file, unsigned framesPerSecond)
    : file_(file, std::ios::binary), framesPerSecond_(framesPerSecond) {}

bool Y4mWriter::Write(const Frame& frame) {
  const auto planes = TightI420(frame);
  if (planes.empty()) return false;
  if (width_ == 0) {
    width_ = frame.width;
    height_ = frame.height;
    file_ << "YUV4MPEG2 W" << width_ << " H" << height_ << " F" << framesPerSecond_ << ":1 Ip A1:1 C420jpeg\n";
  }
  if (frame.width != width_ || frame.height != height_) return false;
  file_ << "FRAME\n";
  file_.write(reinterpret_cast<const char*>(planes.data()), static_cast<std::streamsize>(planes.size()));
  file_.flush();
  return file_.good();
}

}  // namespace ravo::client
