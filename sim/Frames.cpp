#include "Frames.h"

#include <array>

#include "Callbacks.h"

namespace sim {

VideoFrameInfo FrameInfoOf(const Picture& picture, const FrameFacts& facts, bool isScreen) {
  VideoFrameInfo info{};
  info.field_type = isScreen ? 1 : 0;
  info.width = picture.width;
  info.height = picture.height;
  info.rotation = facts.rotation;
  info.renderTimeMs = facts.renderTimeMs;
  return info;
}

void EmitFrame(const std::string& userId, const Picture& picture, const VideoFrameInfo& info) {
  std::array<const std::uint8_t*, 3> planes{};
  std::array<std::int64_t, 3> strides{};
  for (std::size_t i = 0; i < planes.size(); ++i) {
    planes[i] = picture.planes[i].bytes.data();
    strides[i] = picture.planes[i].strideBytes;
  }
  Emit<&OnVideoCommonFrame>(userId.c_str(), info, planes.data(), static_cast<std::int32_t>(planes.size()),
                            strides.data());
}

void EmitFrameSign(const std::string& userId, bool isScreen) {
  if (isScreen) {
    Emit<&OnServerScreenFrame>(userId.c_str());
  } else {
    Emit<&OnServerVideoFrame>(userId.c_str());
  }
}

void EmitStreamAdded(const std::string& userId, const std::string& sid, std::int64_t streamIndex,
                     const std::vector<Encoding>& encodings) {
  std::vector<StreamResolution> resolutions;
  for (const auto& encoding : encodings) {
    const auto number = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
    resolutions.push_back({number(encoding.width), number(encoding.height), number(encoding.maxKbps),
                           number(encoding.frameRate), encoding.scaleMode, encoding.codecMode});
  }
  Emit<&OnMultiStreamAdded>(userId.c_str(), sid.c_str(), streamIndex, resolutions.data(),
                            static_cast<std::int32_t>(resolutions.size()));
}

}  // namespace sim
