#pragma once

#include <array>

namespace TESSARIN_LOG {

// The modules that write to the shared log. Dumps are told apart by them.
inline constexpr std::array<const char*, 9> kModules = {
    "TESSARIN_POWER", "TESSARIN_LUMARC",    "TESSARIN_CAPTURECARD", "TESSARIN_HID",     "TESSARIN_FORMAT",
    "TESSARIN_UVC",   "TESSARIN_AUTHORITY", "TESSARIN_SERVER_API",  "TESSARIN_ECHOTEST"};

}  // namespace TESSARIN_LOG
