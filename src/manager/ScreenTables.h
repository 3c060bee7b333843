#pragma once

#include <span>

#include "Requests.h"

namespace TESSARIN_LUMARC {

// The screen requests that need no state of ours.
[[nodiscard]] std::span<const RequestRow> ScreenRequestRows();

}  // namespace TESSARIN_LUMARC
