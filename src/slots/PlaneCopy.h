#pragma once

#include <cstddef>
#include <cstdint>

namespace TESSARIN_LUMARC::slots {

// Copies a plane of a picture; the two places do not overlap and may lie at any address. For sizes like a plane's the C
// library takes one string instruction of the processor, which needs a third more time than plain loads and stores once
// the planes have left the nearest caches, as they have between the frames of a video. The stores are ordinary ones:
// they keep their order, and leave the picture in the caches for its reader.
void CopyPlane(std::uint8_t* to, const std::uint8_t* from, std::size_t bytes);

}  // namespace TESSARIN_LUMARC::slots
