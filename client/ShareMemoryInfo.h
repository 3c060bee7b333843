#pragma once

#include <cstdint>
#include <string>

#include "common/Fields.h"

namespace ravo::client {

// What the server says of a stream's slot. See ravo/frame_slot.h for what lies at `path`.
struct ShareMemoryInfo {
  std::string sid;  // stream
  std::string uid;  // user
  std::uint64_t bufferSize = 0;
  bool isScreen = false;
  std::string path;
  std::uint64_t bufferNumber = 0;
  bool isMerge = false;
  std::uint32_t frameFormat = 0;
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::uint64_t rotation = 0;
  bool flip = false;
};

}  // namespace ravo::client

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<ravo::client::ShareMemoryInfo> = Fields(
    Field{"sid", &ravo::client::ShareMemoryInfo::sid}, Field{"uid", &ravo::client::ShareMemoryInfo::uid},
    Field{"bufferSize", &ravo::client::ShareMemoryInfo::bufferSize},
    Field{"isScreen", &ravo::client::ShareMemoryInfo::isScreen}, Field{"path", &ravo::client::ShareMemoryInfo::path},
    Field{"bufferNumber", &ravo::client::ShareMemoryInfo::bufferNumber},
    Field{"isMerge", &ravo::client::ShareMemoryInfo::isMerge},
    Field{"frameFormat", &ravo::client::ShareMemoryInfo::frameFormat},
    Field{"width", &ravo::client::ShareMemoryInfo::width}, Field{"height", &ravo::client::ShareMemoryInfo::height},
    Field{"rotation", &ravo::client::ShareMemoryInfo::rotation}, Field{"flip", &ravo::client::ShareMemoryInfo::flip});

}  // namespace TESSARIN_COMMON
