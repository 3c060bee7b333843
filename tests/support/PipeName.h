#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace support {

// A name that no other pipe has, on this system's terms.
[[nodiscard]] std::string UniquePipeName();

// The two ends of a connected pipe, server first, as a parent would hand them to children.
[[nodiscard]] std::pair<std::intptr_t, std::intptr_t> MakePipePair();

}  // namespace support
