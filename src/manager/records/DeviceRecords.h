#pragma once

#include <ravo/engine_records.h>

#include "common/Fields.h"

// A device as clients read it: the engine's record without its reserved bytes.
namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<DeviceInfo> =
    Fields(Field{"deviceName", &DeviceInfo::deviceName}, Field{"deviceId", &DeviceInfo::deviceId},
           Field{"containerId", &DeviceInfo::containerId}, Field{"deviceVid", &DeviceInfo::deviceVid},
           Field{"devicePid", &DeviceInfo::devicePid}, Field{"deviceType", &DeviceInfo::deviceType},
           Field{"isBuiltin", &DeviceInfo::isBuiltin}, Field{"isBluetooth", &DeviceInfo::isBluetooth},
           Field{"isDisplayAudio", &DeviceInfo::isDisplayAudio}, Field{"isVirtual", &DeviceInfo::isVirtual},
           Field{"isUnknown", &DeviceInfo::isUnknown}, Field{"canGetVolume", &DeviceInfo::canGetVolume},
           Field{"canSetVolume", &DeviceInfo::canSetVolume}, Field{"stereoMode", &DeviceInfo::stereoMode},
           Field{"handsFreeMode", &DeviceInfo::handsFreeMode}, Field{"canMove", &DeviceInfo::canMove},
           Field{"canZoom", &DeviceInfo::canZoom}, Field{"canAutoFraming", &DeviceInfo::canAutoFraming});

}  // namespace TESSARIN_COMMON
