#pragma once

#include <ravo/engine_records.h>

#include "common/Fields.h"

// The members of the engine's records, for the journal and for callbacks that are fired from JSON. Records that the
// engine only fills have no list.
namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<ActiveSpeakerConfig> = Fields(
    Field{"tickTime", &ActiveSpeakerConfig::tickTime}, Field{"sampleInterval", &ActiveSpeakerConfig::sampleInterval},
    Field{"maxRecordTime", &ActiveSpeakerConfig::maxRecordTime},
    Field{"minSpeakerVolume", &ActiveSpeakerConfig::minSpeakerVolume},
    Field{"timeBase", &ActiveSpeakerConfig::timeBase}, Field{"rankBase", &ActiveSpeakerConfig::rankBase});

template <>
inline constexpr auto kFields<EngineEffectDownloadConfig> = Fields(
    Field{"accessKey", &EngineEffectDownloadConfig::accessKey}, Field{"host", &EngineEffectDownloadConfig::host},
    Field{"platform", &EngineEffectDownloadConfig::platform},
    Field{"deviceType", &EngineEffectDownloadConfig::deviceType},
    Field{"channel", &EngineEffectDownloadConfig::channel}, Field{"deviceId", &EngineEffectDownloadConfig::deviceId});

template <>
inline constexpr auto kFields<VideoProfile> = Fields(Field{"width", &VideoProfile::width},
                                                     Field{"height", &VideoProfile::height},
                                                     Field{"maxKbps", &VideoProfile::maxKbps},
                                                     Field{"frameRate", &VideoProfile::frameRate},
                                                     Field{"scaleMode", &VideoProfile::scaleMode},
                                                     Field{"codecMode", &VideoProfile::codecMode});

template <>
inline constexpr auto kFields<LeaveMeetingConfig> =
    Fields(Field{"autoDestroyRTCEngine", &LeaveMeetingConfig::autoDestroyRTCEngine},
           Field{"autoMuteLocalVideo", &LeaveMeetingConfig::autoMuteLocalVideo},
           Field{"destroyTimeoutDuration", &LeaveMeetingConfig::destroyTimeoutDuration});

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
inline constexpr auto kFields<LocalQuality> =
    Fields(Field{"uid", &LocalQuality::uid}, Field{"uplink_rtt_quality", &LocalQuality::uplink_rtt_quality},
           Field{"uplink_loss_quality", &LocalQuality::uplink_loss_quality},
           Field{"uplink_abs_bw_quality", &LocalQuality::uplink_abs_bw_quality},
           Field{"uplink_rel_bw_quality", &LocalQuality::uplink_rel_bw_quality},
           Field{"uplink_quality", &LocalQuality::uplink_quality},
           Field{"downlink_rtt_quality", &LocalQuality::downlink_rtt_quality},
           Field{"downlink_loss_quality", &LocalQuality::downlink_loss_quality},
           Field{"downlink_abs_bw_quality", &LocalQuality::downlink_abs_bw_quality},
           Field{"downlink_rel_bw_quality", &LocalQuality::downlink_rel_bw_quality},
           Field{"downlink_quality", &LocalQuality::downlink_quality});

template <>
inline constexpr auto kFields<RemoteQuality> = Fields(Field{"uid", &RemoteQuality::uid},
                                                      Field{"uplink_quality", &RemoteQuality::uplink_quality},
                                                      Field{"downlink_quality", &RemoteQuality::downlink_quality});

template <>
inline constexpr auto kFields<VolumeInfo> = Fields(Field{"uid", &VolumeInfo::uid}, Field{"volume", &VolumeInfo::volume},
                                                   Field{"linearVolume", &VolumeInfo::linearVolume});

template <>
inline constexpr auto kFields<LocalVolumeInfo> = Fields(Field{"uid", &LocalVolumeInfo::uid},
                                                        Field{"volume", &LocalVolumeInfo::volume},
                                                        Field{"smoothVolume", &LocalVolumeInfo::smoothVolume},
                                                        Field{"linearVolume", &LocalVolumeInfo::linearVolume});

template <>
inline constexpr auto kFields<SysStats> =
    Fields(Field{"cpu_cores", &SysStats::cpu_cores}, Field{"cpu_app_usage", &SysStats::cpu_app_usage},
           Field{"cpu_total_usage", &SysStats::cpu_total_usage}, Field{"memory_usage", &SysStats::memory_usage},
           Field{"full_memory", &SysStats::full_memory}, Field{"total_memory_usage", &SysStats::total_memory_usage},
           Field{"free_memory", &SysStats::free_memory}, Field{"memory_ratio", &SysStats::memory_ratio},
           Field{"total_memory_ratio", &SysStats::total_memory_ratio});

template <>
inline constexpr auto kFields<BandwidthEstimation> =
    Fields(Field{"txEstimateBandwidth", &BandwidthEstimation::txEstimateBandwidth},
           Field{"txBandwidthStatus", &BandwidthEstimation::txBandwidthStatus},
           Field{"rxEstimateBandwidth", &BandwidthEstimation::rxEstimateBandwidth},
           Field{"rxBandwidthStatus", &BandwidthEstimation::rxBandwidthStatus});

template <>
inline constexpr auto kFields<MeriTrackPair> = Fields(Field{"key", &MeriTrackPair::key},
                                                      Field{"value", &MeriTrackPair::value});

template <>
inline constexpr auto kFields<VideoFrameInfo> =
    Fields(Field{"field_type", &VideoFrameInfo::field_type}, Field{"format", &VideoFrameInfo::format},
           Field{"colorSpace", &VideoFrameInfo::colorSpace}, Field{"width", &VideoFrameInfo::width},
           Field{"height", &VideoFrameInfo::height}, Field{"rotation", &VideoFrameInfo::rotation},
           Field{"renderTimeMs", &VideoFrameInfo::renderTimeMs}, Field{"flip", &VideoFrameInfo::flip});

template <>
inline constexpr auto kFields<RemoteStreamKey> = Fields(Field{"roomId", &RemoteStreamKey::roomId},
                                                        Field{"userId", &RemoteStreamKey::userId},
                                                        Field{"streamIndex", &RemoteStreamKey::streamIndex});

template <>
inline constexpr auto kFields<StreamResolution> = Fields(Field{"width", &StreamResolution::width},
                                                         Field{"height", &StreamResolution::height},
                                                         Field{"maxKbps", &StreamResolution::maxKbps},
                                                         Field{"frameRate", &StreamResolution::frameRate},
                                                         Field{"scaleMode", &StreamResolution::scaleMode},
                                                         Field{"codecMode", &StreamResolution::codecMode});

template <>
inline constexpr auto kFields<SubscribeInfo> = Fields(Field{"subscribeVideo", &SubscribeInfo::subscribeVideo},
                                                      Field{"subscribeAudio", &SubscribeInfo::subscribeAudio},
                                                      Field{"videoIndex", &SubscribeInfo::videoIndex},
                                                      Field{"layer", &SubscribeInfo::layer});

template <>
inline constexpr auto kFields<SubscribeConfig> = Fields(Field{"frameRate", &SubscribeConfig::frameRate},
                                                        Field{"width", &SubscribeConfig::width},
                                                        Field{"height", &SubscribeConfig::height},
                                                        Field{"unused", &SubscribeConfig::unused});

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

template <>
inline constexpr auto kFields<AudioMixingOption> = Fields(Field{"reserved1", &AudioMixingOption::reserved1},
                                                          Field{"reserved2", &AudioMixingOption::reserved2},
                                                          Field{"value", &AudioMixingOption::value},
                                                          Field{"reserved3", &AudioMixingOption::reserved3});

template <>
inline constexpr auto kFields<ResolutionLimit> =
    Fields(Field{"maxResolutionWidth", &ResolutionLimit::maxResolutionWidth},
           Field{"maxResolutionHeight", &ResolutionLimit::maxResolutionHeight});

template <>
inline constexpr auto kFields<ScreenCaptureConfig> = Fields(
    Field{"scFramePublishKeepAliveIntervalMs", &ScreenCaptureConfig::scFramePublishKeepAliveIntervalMs},
    Field{"scMovedWindowStableKeepMinDurationTimeMs", &ScreenCaptureConfig::scMovedWindowStableKeepMinDurationTimeMs});

template <>
inline constexpr auto kFields<VideoCaptureConfig> = Fields(Field{"width", &VideoCaptureConfig::width},
                                                           Field{"height", &VideoCaptureConfig::height},
                                                           Field{"frameRate", &VideoCaptureConfig::frameRate},
                                                           Field{"capturePreference",
                                                                 &VideoCaptureConfig::capturePreference});

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
