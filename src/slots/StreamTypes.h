#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/Fields.h"

// The records of streams and of their frame slots.
namespace TESSARIN_LUMARC::slots {

// One published encoding of a stream, as the engine reports it.
struct StreamResolution {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::uint64_t maxKbps = 0;
  std::uint64_t frameRate = 0;
  std::int32_t scaleMode = 0;
  std::int32_t codecMode = 0;
};

// One stream. In the table of StreamDataManager `uid` holds the user's key; what GetStreamBySid hands out holds the
// plain user id.
struct StreamInfo {
  std::string uid;
  std::string sid;
  bool hasVideo = false;  // subscribed with video
  bool hasAudio = false;
  bool isScreen = false;
  std::vector<StreamResolution> resolutions;  // empty for engine streams: the scheduler alone keeps them
  bool isMerge = false;                       // always false in this system
  std::uint64_t frameFormat = 0;              // 0 after every update
};

// A slot as the client hears of it.
struct ShareMemoryInfo {
  std::string sid;
  std::string uid;               // without the screen suffix
  std::uint64_t bufferSize = 0;  // bytes of one buffer, its header included
  bool isScreen = false;
  std::string path;  // name of the segment, stem of the names of its events
  std::uint64_t bufferNumber = 0;
  bool isMerge = false;
  std::uint32_t frameFormat = 0;  // folded, see FoldedFormat
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::uint64_t rotation = 0;
  bool flip = false;
};

// What "shareMemoryUpdate" tells of a slot, and the client's answer to it.
enum ShareMemoryOp : std::int64_t {
  kShareMemoryAdd = 0,  // also: changed in place
  kShareMemoryRemove = 1,
  kShareMemoryClear = 2,  // in an answer alone: all slots
};

// The description of a frame that travels beside its planes. Widths and heights in pixels, strides in bytes.
struct FrameMeta {
  std::uint32_t reserved0 = 0;
  std::uint32_t reserved1 = 0;
  std::uint32_t reservedWord = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t stride0 = 0;
  std::uint32_t stride1 = 0;
  std::uint32_t stride2 = 0;
  std::uint32_t rotation = 0;
  std::uint32_t flip = 0;
  std::uint32_t renderTimeMs = 0;
  std::uint32_t format = 0;
  std::uint32_t colorSpace = 0;
};
static_assert(sizeof(FrameMeta) == 13 * sizeof(std::uint32_t));

// The frame format as announcements carry it: both formats of two planes are 2, unknown ones 0.
constexpr std::uint32_t FoldedFormat(std::uint32_t format) {
  if (format == 1) return 1;
  return format == 2 || format == 3 ? 2 : 0;
}

// A stream as the state queries show it.
struct StreamStateRecord {
  std::string uid;
  std::string sid;
  std::int32_t streamType = 0;
  std::int32_t frameStatus = 0;
  bool isSelf = false;
  std::vector<StreamResolution> resolutions;
};

}  // namespace TESSARIN_LUMARC::slots

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::slots::StreamResolution> =
    Fields(Field{"width", &TESSARIN_LUMARC::slots::StreamResolution::width},
           Field{"height", &TESSARIN_LUMARC::slots::StreamResolution::height},
           Field{"maxKbps", &TESSARIN_LUMARC::slots::StreamResolution::maxKbps},
           Field{"frameRate", &TESSARIN_LUMARC::slots::StreamResolution::frameRate},
           Field{"scaleMode", &TESSARIN_LUMARC::slots::StreamResolution::scaleMode},
           Field{"codecMode", &TESSARIN_LUMARC::slots::StreamResolution::codecMode});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::slots::ShareMemoryInfo> =
    Fields(Field{"sid", &TESSARIN_LUMARC::slots::ShareMemoryInfo::sid},
           Field{"uid", &TESSARIN_LUMARC::slots::ShareMemoryInfo::uid},
           Field{"bufferSize", &TESSARIN_LUMARC::slots::ShareMemoryInfo::bufferSize},
           Field{"isScreen", &TESSARIN_LUMARC::slots::ShareMemoryInfo::isScreen},
           Field{"path", &TESSARIN_LUMARC::slots::ShareMemoryInfo::path},
           Field{"bufferNumber", &TESSARIN_LUMARC::slots::ShareMemoryInfo::bufferNumber},
           Field{"isMerge", &TESSARIN_LUMARC::slots::ShareMemoryInfo::isMerge},
           Field{"frameFormat", &TESSARIN_LUMARC::slots::ShareMemoryInfo::frameFormat},
           Field{"width", &TESSARIN_LUMARC::slots::ShareMemoryInfo::width},
           Field{"height", &TESSARIN_LUMARC::slots::ShareMemoryInfo::height},
           Field{"rotation", &TESSARIN_LUMARC::slots::ShareMemoryInfo::rotation},
           Field{"flip", &TESSARIN_LUMARC::slots::ShareMemoryInfo::flip});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::slots::StreamStateRecord> =
    Fields(Field{"uid", &TESSARIN_LUMARC::slots::StreamStateRecord::uid},
           Field{"sid", &TESSARIN_LUMARC::slots::StreamStateRecord::sid},
           Field{"streamType", &TESSARIN_LUMARC::slots::StreamStateRecord::streamType},
           Field{"frameStatus", &TESSARIN_LUMARC::slots::StreamStateRecord::frameStatus},
           Field{"isSelf", &TESSARIN_LUMARC::slots::StreamStateRecord::isSelf},
           Field{"resolutions", &TESSARIN_LUMARC::slots::StreamStateRecord::resolutions});

}  // namespace TESSARIN_COMMON
