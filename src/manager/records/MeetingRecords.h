#pragma once

#include <ravo/engine_records.h>

#include <cstdint>
#include <string>

#include "common/Fields.h"

// Records of a meeting: what clients send as arguments, and the engine's statistics as clients read them.
namespace TESSARIN_LUMARC {

// An element of the argument of "SetSubChannels".
struct Channel {
  std::string channelName;
  std::int64_t volumeScale = 0;
};

// An element of the argument of "SetVideoOutputMode".
struct OutputMode {
  std::string userId;
  bool isScreen = false;
  std::string streamId;
  bool enableShareMemory = false;
  bool enableCallback = false;
};

}  // namespace TESSARIN_LUMARC

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::Channel> =
    Fields(Field{"channelName", &TESSARIN_LUMARC::Channel::channelName},
           Field{"volumeScale", &TESSARIN_LUMARC::Channel::volumeScale});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::OutputMode> = Fields(
    Field{"userId", &TESSARIN_LUMARC::OutputMode::userId}, Field{"isScreen", &TESSARIN_LUMARC::OutputMode::isScreen},
    Field{"streamId", &TESSARIN_LUMARC::OutputMode::streamId},
    Field{"enableShareMemory", &TESSARIN_LUMARC::OutputMode::enableShareMemory},
    Field{"enableCallback", &TESSARIN_LUMARC::OutputMode::enableCallback});

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
inline constexpr auto kFields<DevicePerformance> =
    Fields(Field{"memory", &DevicePerformance::memory}, Field{"cpuCores", &DevicePerformance::cpuCores},
           Field{"cpuThreads", &DevicePerformance::cpuThreads}, Field{"cpuFrequency", &DevicePerformance::cpuFrequency},
           Field{"cpuModel", &DevicePerformance::cpuModel}, Field{"gpuModel", &DevicePerformance::gpuModel},
           Field{"os", &DevicePerformance::os}, Field{"osVersion", &DevicePerformance::osVersion},
           Field{"deviceModel", &DevicePerformance::deviceModel});

template <>
inline constexpr auto kFields<LocalAudioStats> =
    Fields(Field{"audio_loss_rate", &LocalAudioStats::audio_loss_rate},
           Field{"send_kbitrate", &LocalAudioStats::send_kbitrate},
           Field{"record_sample_rate", &LocalAudioStats::record_sample_rate},
           Field{"stats_interval", &LocalAudioStats::stats_interval}, Field{"rtt", &LocalAudioStats::rtt},
           Field{"num_channels", &LocalAudioStats::num_channels},
           Field{"sent_sample_rate", &LocalAudioStats::sent_sample_rate}, Field{"jitter", &LocalAudioStats::jitter});

template <>
inline constexpr auto kFields<LocalVideoStats> =
    Fields(Field{"sent_kbitrate", &LocalVideoStats::sent_kbitrate},
           Field{"input_frame_rate", &LocalVideoStats::input_frame_rate},
           Field{"sent_frame_rate", &LocalVideoStats::sent_frame_rate},
           Field{"encoder_output_frame_rate", &LocalVideoStats::encoder_output_frame_rate},
           Field{"renderer_output_frame_rate", &LocalVideoStats::renderer_output_frame_rate},
           Field{"target_kbitrate", &LocalVideoStats::target_kbitrate},
           Field{"target_frame_rate", &LocalVideoStats::target_frame_rate},
           Field{"stats_interval", &LocalVideoStats::stats_interval},
           Field{"video_loss_rate", &LocalVideoStats::video_loss_rate}, Field{"rtt", &LocalVideoStats::rtt},
           Field{"encoded_bitrate", &LocalVideoStats::encoded_bitrate},
           Field{"encoded_frame_width", &LocalVideoStats::encoded_frame_width},
           Field{"encoded_frame_height", &LocalVideoStats::encoded_frame_height},
           Field{"encoded_frame_count", &LocalVideoStats::encoded_frame_count},
           Field{"codec_type", &LocalVideoStats::codec_type}, Field{"is_screen", &LocalVideoStats::is_screen},
           Field{"jitter", &LocalVideoStats::jitter});

template <>
inline constexpr auto kFields<LocalStreamStats> = Fields(Field{"audio_stats", &LocalStreamStats::audio_stats},
                                                         Field{"video_stats", &LocalStreamStats::video_stats},
                                                         Field{"local_tx_quality", &LocalStreamStats::local_tx_quality},
                                                         Field{"local_rx_quality", &LocalStreamStats::local_rx_quality},
                                                         Field{"is_screen", &LocalStreamStats::is_screen});

template <>
inline constexpr auto kFields<RemoteAudioStats> =
    Fields(Field{"audio_loss_rate", &RemoteAudioStats::audio_loss_rate},
           Field{"received_kbitrate", &RemoteAudioStats::received_kbitrate},
           Field{"stall_count", &RemoteAudioStats::stall_count},
           Field{"stall_duration", &RemoteAudioStats::stall_duration}, Field{"e2e_delay", &RemoteAudioStats::e2e_delay},
           Field{"playout_sample_rate", &RemoteAudioStats::playout_sample_rate},
           Field{"stats_interval", &RemoteAudioStats::stats_interval}, Field{"rtt", &RemoteAudioStats::rtt},
           Field{"total_rtt", &RemoteAudioStats::total_rtt}, Field{"quality", &RemoteAudioStats::quality},
           Field{"jitter_buffer_delay", &RemoteAudioStats::jitter_buffer_delay},
           Field{"num_channels", &RemoteAudioStats::num_channels},
           Field{"received_sample_rate", &RemoteAudioStats::received_sample_rate},
           Field{"frozen_rate", &RemoteAudioStats::frozen_rate},
           Field{"concealed_samples", &RemoteAudioStats::concealed_samples},
           Field{"concealment_event", &RemoteAudioStats::concealment_event},
           Field{"dec_sample_rate", &RemoteAudioStats::dec_sample_rate},
           Field{"dec_duration", &RemoteAudioStats::dec_duration}, Field{"jitter", &RemoteAudioStats::jitter});

// The number of stalls stands twice. Wanted.
template <>
inline constexpr auto kFields<RemoteVideoStats> =
    Fields(Field{"width", &RemoteVideoStats::width}, Field{"height", &RemoteVideoStats::height},
           Field{"video_loss_rate", &RemoteVideoStats::video_loss_rate},
           Field{"received_kbitrate", &RemoteVideoStats::received_kbitrate},
           Field{"decoder_output_frame_rate", &RemoteVideoStats::decoder_output_frame_rate},
           Field{"renderer_output_frame_rate", &RemoteVideoStats::renderer_output_frame_rate},
           Field{"stall_count", &RemoteVideoStats::stall_count}, Field{"stall_count", &RemoteVideoStats::stall_count},
           Field{"stall_duration", &RemoteVideoStats::stall_duration}, Field{"e2e_delay", &RemoteVideoStats::e2e_delay},
           Field{"is_screen", &RemoteVideoStats::is_screen}, Field{"stats_interval", &RemoteVideoStats::stats_interval},
           Field{"rtt", &RemoteVideoStats::rtt}, Field{"frozen_rate", &RemoteVideoStats::frozen_rate},
           Field{"video_index", &RemoteVideoStats::video_index}, Field{"jitter", &RemoteVideoStats::jitter});

template <>
inline constexpr auto kFields<RemoteStreamStats> =
    Fields(Field{"uid", &RemoteStreamStats::uid}, Field{"audio_stats", &RemoteStreamStats::audio_stats},
           Field{"video_stats", &RemoteStreamStats::video_stats},
           Field{"remote_tx_quality", &RemoteStreamStats::remote_tx_quality},
           Field{"remote_rx_quality", &RemoteStreamStats::remote_rx_quality},
           Field{"is_screen", &RemoteStreamStats::is_screen});

}  // namespace TESSARIN_COMMON
