#include "Y4mReader.h"

#include <charconv>
#include <sstream>
#include <stdexcept>

#include "Utf8Path.h"

namespace sim {
namespace {

constexpr int kMaxSide = 16384;

bool Is8Bit420(std::string_view colours) {
  return colours == "420" || colours == "420jpeg" || colours == "420mpeg2" || colours == "420paldv";
}

int ParseSide(std::string_view digits) {
  int side = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), side);
  const bool good = error == std::errc{} && end == digits.data() + digits.size() && side > 0 && side <= kMaxSide;
  return good ? side : 0;
}

}  // namespace

Y4mReader::Y4mReader(const std::string& path) : path_(path), file_(Utf8Path(path), std::ios::binary) {
  if (!file_) Fail("cannot be opened");
  std::string header;
  if (!std::getline(file_, header)) Fail("is empty");
  ParseHeader(header);
  firstFrame_ = file_.tellg();
  Picture probe;
  if (!ReadFrame(probe)) Fail("holds no whole frame");
  file_.seekg(firstFrame_);
}

void Y4mReader::Next(Picture& picture) {
  if (ReadFrame(picture)) return;
  file_.clear();
  file_.seekg(firstFrame_);
  if (!ReadFrame(picture)) Fail("lost its frames");
}

void Y4mReader::ParseHeader(const std::string& header) {
  std::istringstream tags(header);
  std::string tag;
  tags >> tag;
  if (tag != "YUV4MPEG2") Fail("is no Y4M file");
  while (tags >> tag) ParseTag(tag);
  if (width_ == 0 || height_ == 0) Fail("has no usable size");
}

// Frame rate, interlacing and aspect are left to the encodings of the stream.
void Y4mReader::ParseTag(std::string_view tag) {
  const std::string_view value = tag.substr(1);
  if (tag[0] == 'W') width_ = ParseSide(value);
  if (tag[0] == 'H') height_ = ParseSide(value);
  if (tag[0] == 'C' && !Is8Bit420(value)) Fail("is not 8-bit 4:2:0");
}

bool Y4mReader::ReadFrame(Picture& picture) {
  std::string line;
  if (!std::getline(file_, line) || !line.starts_with("FRAME")) return false;
  picture.Resize(width_, height_);
  for (auto& plane : picture.planes) {
    file_.read(reinterpret_cast<char*>(plane.bytes.data()), static_cast<std::streamsize>(plane.bytes.size()));
  }
  return file_.good();
}

void Y4mReader::Fail(std::string_view what) const {
  throw std::runtime_error("video file " + path_ + " " + std::string(what));
}

}  // namespace sim
