#pragma once

#include <span>

#include "Events.h"
#include "Requests.h"

// What the managers are made of. Their own requests stand in their classes.
namespace TESSARIN_LUMARC {

// Requests that need no state of ours.
[[nodiscard]] std::span<const RequestRow> MeetingRequestRows();
[[nodiscard]] std::span<const RequestRow> ScreenRequestRows();
[[nodiscard]] std::span<const RequestRow> DeviceRequestRows();

// Callbacks of the engine, in the order of their registration.
[[nodiscard]] std::span<const EventRow> MeetingEventRows();
[[nodiscard]] std::span<const EventRow> ScreenEventRows();
[[nodiscard]] std::span<const EventRow> DeviceEventRows();
[[nodiscard]] std::span<const EventRow> StreamEventRows();

// Gives the power monitor its callbacks.
void ListenToPower();

}  // namespace TESSARIN_LUMARC
