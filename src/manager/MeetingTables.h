#pragma once

#include <span>

#include "Requests.h"

namespace TESSARIN_LUMARC {

// Gives the engine the callbacks of a meeting, in their order.
void RegisterMeetingEvents();

// The requests of a meeting that need no state of ours.
[[nodiscard]] std::span<const RequestRow> MeetingRequestRows();

}  // namespace TESSARIN_LUMARC
