#pragma once

#include <filesystem>
#include <string>

#include "reader/Frame.h"

namespace ravo::ctl {

[[nodiscard]] std::filesystem::path PathFromUtf8(const std::string& text);

// Writes a frame as a PNG file. Fails with a std::runtime_error for a frame that is no picture, and if the file
// cannot be written.
void WritePng(const std::string& file, const client::Frame& frame);

}  // namespace ravo::ctl
