#pragma once

#include <ravo/engine_records.h>

#include <string>

#include "common/Fields.h"

// Records of streams: which client asks, and what the engine tells of streams and frames.
namespace TESSARIN_LUMARC {

// Names the view that asks for a stream.
struct SubscribeClient {
  std::string subscribeClientId;
};

}  // namespace TESSARIN_LUMARC

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::SubscribeClient> = Fields(Field{
    "subscribeClientId", &TESSARIN_LUMARC::SubscribeClient::subscribeClientId});

template <>
inline constexpr auto kFields<StreamResolution> = Fields(Field{"width", &StreamResolution::width},
                                                         Field{"height", &StreamResolution::height},
                                                         Field{"maxKbps", &StreamResolution::maxKbps},
                                                         Field{"frameRate", &StreamResolution::frameRate},
                                                         Field{"scaleMode", &StreamResolution::scaleMode},
                                                         Field{"codecMode", &StreamResolution::codecMode});

template <>
inline constexpr auto kFields<SubscribeInfo> = Fields(Field{"subscribeVideo", &SubscribeInfo::subscribeVideo},
                                                      Field{"subscribeAudio", &SubscribeInfo::subscribeAudio},
                                                      Field{"videoIndex", &SubscribeInfo::videoIndex},
                                                      Field{"layer", &SubscribeInfo::layer});

template <>
inline constexpr auto kFields<VideoFrameInfo> =
    Fields(Field{"field_type", &VideoFrameInfo::field_type}, Field{"format", &VideoFrameInfo::format},
           Field{"colorSpace", &VideoFrameInfo::colorSpace}, Field{"width", &VideoFrameInfo::width},
           Field{"height", &VideoFrameInfo::height}, Field{"rotation", &VideoFrameInfo::rotation},
           Field{"renderTimeMs", &VideoFrameInfo::renderTimeMs}, Field{"flip", &VideoFrameInfo::flip});

template <>
inline constexpr auto kFields<RemoteStreamKey> = Fields(Field{"roomId", &RemoteStreamKey::roomId},
                                                        Field{"userId", &RemoteStreamKey::userId},
                                                        Field{"streamIndex", &RemoteStreamKey::streamIndex});

}  // namespace TESSARIN_COMMON
