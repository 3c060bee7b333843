#pragma once

#include <ravo/engine_abi.h>

#include <cstdint>
#include <string>

#include "MediaStream.h"

namespace sim {

[[nodiscard]] VideoFrameInfo FrameInfoOf(const Picture& picture, const FrameFacts& facts, bool isScreen);

// Hands the picture to OnVideoCommonFrame. The planes are passed as they lie.
void EmitFrame(const std::string& userId, const Picture& picture, const VideoFrameInfo& info);

// Tells the watch over streams that one of the user's frames has come.
void EmitFrameSign(const std::string& userId, bool isScreen);

// Announces a stream with what it publishes.
void EmitStreamAdded(const std::string& userId, const std::string& sid, std::int64_t streamIndex,
                     const std::vector<Encoding>& encodings);

}  // namespace sim
