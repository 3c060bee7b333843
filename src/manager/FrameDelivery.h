#pragma once

#include <ravo/engine_records.h>

#include <cstdint>

namespace TESSARIN_LUMARC {

// Takes every picture that the client is to see, on the engine's delivery threads: finds its stream, drops what must
// not be shown, and hands the rest to the slots. The hottest path of the system; it takes no lock of its own.
void OnVideoCommonFrame(const char* uid, VideoFrameInfo info, const std::uint8_t* const* planes,
                        std::int32_t planeCount, const std::int64_t* strides);

}  // namespace TESSARIN_LUMARC
