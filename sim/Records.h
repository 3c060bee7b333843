#pragma once

#include <ravo/engine_records.h>

#include "common/Fields.h"
#include "manager/ServerOption.h"
#include "manager/records/DeviceRecords.h"
#include "manager/records/MeetingRecords.h"
#include "manager/records/ScreenRecords.h"
#include "manager/records/StreamRecords.h"

// The members of the engine's records, for the journal and for callbacks that are fired from JSON. Those that clients
// read too have their lists in the server's headers; here stand the others.
namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<EngineEffectDownloadConfig> = Fields(
    Field{"accessKey", &EngineEffectDownloadConfig::accessKey}, Field{"host", &EngineEffectDownloadConfig::host},
    Field{"platform", &EngineEffectDownloadConfig::platform},
    Field{"deviceType", &EngineEffectDownloadConfig::deviceType},
    Field{"channel", &EngineEffectDownloadConfig::channel}, Field{"deviceId", &EngineEffectDownloadConfig::deviceId});

template <>
inline constexpr auto kFields<EngineDeviceSameAsSystemConfig> =
    Fields(Field{"deviceId", &EngineDeviceSameAsSystemConfig::deviceId},
           Field{"deviceName", &EngineDeviceSameAsSystemConfig::deviceName},
           Field{"fallbackDeviceName", &EngineDeviceSameAsSystemConfig::fallbackDeviceName});

template <>
inline constexpr auto kFields<EngineProxyConfig> = Fields(Field{"proxyType", &EngineProxyConfig::proxyType},
                                                          Field{"proxyIp", &EngineProxyConfig::proxyIp},
                                                          Field{"proxyPort", &EngineProxyConfig::proxyPort},
                                                          Field{"unused1", &EngineProxyConfig::unused1},
                                                          Field{"unused2", &EngineProxyConfig::unused2});

template <>
inline constexpr auto kFields<JoinUser> = Fields(Field{"userId", &JoinUser::userId},
                                                 Field{"extraInfo", &JoinUser::extraInfo});

template <>
inline constexpr auto kFields<JoinRoomOption> = Fields(Field{"channelProfile", &JoinRoomOption::channelProfile},
                                                       Field{"reserved", &JoinRoomOption::reserved},
                                                       Field{"flag1", &JoinRoomOption::flag1},
                                                       Field{"flag2", &JoinRoomOption::flag2},
                                                       Field{"flag3", &JoinRoomOption::flag3});

template <>
inline constexpr auto kFields<EngineChannel> = Fields(Field{"channelName", &EngineChannel::channelName},
                                                      Field{"volumeScale", &EngineChannel::volumeScale});

template <>
inline constexpr auto kFields<MeriTrackPair> = Fields(Field{"key", &MeriTrackPair::key},
                                                      Field{"value", &MeriTrackPair::value});

template <>
inline constexpr auto kFields<SubscribeConfig> = Fields(Field{"frameRate", &SubscribeConfig::frameRate},
                                                        Field{"width", &SubscribeConfig::width},
                                                        Field{"height", &SubscribeConfig::height},
                                                        Field{"unused", &SubscribeConfig::unused});

template <>
inline constexpr auto kFields<AudioMixingOption> = Fields(Field{"reserved1", &AudioMixingOption::reserved1},
                                                          Field{"reserved2", &AudioMixingOption::reserved2},
                                                          Field{"value", &AudioMixingOption::value},
                                                          Field{"reserved3", &AudioMixingOption::reserved3});

template <>
inline constexpr auto kFields<Thumbnail> = Fields(Field{"id", &Thumbnail::id}, Field{"val", &Thumbnail::val});

}  // namespace TESSARIN_COMMON

namespace sim {

// Records of which a pointer means the first of a list.
template <class T>
inline constexpr bool kComesInLists = false;
template <>
inline constexpr bool kComesInLists<VideoProfile> = true;
template <>
inline constexpr bool kComesInLists<EngineProxyConfig> = true;
template <>
inline constexpr bool kComesInLists<EngineChannel> = true;
template <>
inline constexpr bool kComesInLists<RemoteQuality> = true;
template <>
inline constexpr bool kComesInLists<VolumeInfo> = true;
template <>
inline constexpr bool kComesInLists<MeriTrackPair> = true;
template <>
inline constexpr bool kComesInLists<StreamResolution> = true;
template <>
inline constexpr bool kComesInLists<DeviceInfo> = true;
template <>
inline constexpr bool kComesInLists<Thumbnail> = true;
template <>
inline constexpr bool kComesInLists<const char*> = true;
template <>
inline constexpr bool kComesInLists<std::uint8_t> = true;

}  // namespace sim
