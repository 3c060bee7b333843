/* The records that cross the boundary to the real-time engine. Part of engine_abi.h, which says what holds for all.
 *
 * Whoever calls owns what its records point to; it stays valid until the call returns, and the callee copies what it
 * keeps. That goes for both directions: what a callback is given belongs to the engine and ends with the callback.
 * The lists that the engine hands out (DeviceList, DesktopList, WindowList) are the one exception.
 *
 * Strings are NUL-terminated UTF-8 and are not null unless it is said here. A member of statistics is passed on under
 * its name as it comes: its unit and range are the engine's to define.
 *
 * A record with the prefix Engine is the form of an option or argument whose record on the client's side owns its
 * strings and lists. */
#ifndef RAVO_ENGINE_RECORDS_H
#define RAVO_ENGINE_RECORDS_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if defined(__cplusplus)
#define RAVO_ENGINE_ASSERT(condition) static_assert(condition, #condition)
#else
#define RAVO_ENGINE_ASSERT(condition) _Static_assert(condition, #condition)
#endif
/* The size in bytes where pointers have 32 bits, and where they have 64. */
#define RAVO_ENGINE_SIZE(type, size32, size64) \
  RAVO_ENGINE_ASSERT(sizeof(type) == (sizeof(void*) == 4 ? (size32) : (size64)))
#define RAVO_ENGINE_OFFSET(type, member, offset) RAVO_ENGINE_ASSERT(offsetof(type, member) == (offset))

RAVO_ENGINE_ASSERT(sizeof(bool) == 1);

/* ---- Options ---- */

typedef struct ActiveSpeakerConfig {
  double tickTime;
  double sampleInterval;
  double maxRecordTime;
  double minSpeakerVolume;
  double timeBase;
  double rankBase;
} ActiveSpeakerConfig;
RAVO_ENGINE_SIZE(ActiveSpeakerConfig, 48, 48);

typedef struct EngineEffectDownloadConfig {
  const char* accessKey;
  const char* host;
  const char* platform;
  const char* deviceType;
  const char* channel;
  const char* deviceId;
} EngineEffectDownloadConfig;
RAVO_ENGINE_SIZE(EngineEffectDownloadConfig, 24, 48);

/* An encoding to publish. */
typedef struct VideoProfile {
  int64_t width;  /* pixels */
  int64_t height; /* pixels */
  int64_t maxKbps;
  int64_t frameRate; /* frames a second */
  int64_t scaleMode;
  int64_t codecMode;
} VideoProfile;
RAVO_ENGINE_SIZE(VideoProfile, 48, 48);

typedef struct LeaveMeetingConfig {
  bool autoDestroyRTCEngine;
  bool autoMuteLocalVideo;
  int64_t destroyTimeoutDuration;
} LeaveMeetingConfig;
RAVO_ENGINE_SIZE(LeaveMeetingConfig, 16, 16);
RAVO_ENGINE_OFFSET(LeaveMeetingConfig, destroyTimeoutDuration, 8);

/* How to name the pseudo device that follows the operating system's default. */
typedef struct EngineDeviceSameAsSystemConfig {
  const char* deviceId;
  const char* deviceName; /* a pattern: {{deviceId}} stands for the id */
  const char* fallbackDeviceName;
} EngineDeviceSameAsSystemConfig;
RAVO_ENGINE_SIZE(EngineDeviceSameAsSystemConfig, 12, 24);

typedef struct EngineProxyConfig {
  int64_t proxyType;
  const char* proxyIp;
  int64_t proxyPort;
  const char* unused1; /* empty */
  const char* unused2; /* empty */
} EngineProxyConfig;
RAVO_ENGINE_SIZE(EngineProxyConfig, 32, 40);
RAVO_ENGINE_OFFSET(EngineProxyConfig, proxyPort, 16);

/* ---- Meeting ---- */

typedef struct JoinUser {
  const char* userId;
  const char* extraInfo; /* extra text of the client's */
} JoinUser;
RAVO_ENGINE_SIZE(JoinUser, 8, 16);

/* Always the noted values. */
typedef struct JoinRoomOption {
  int64_t channelProfile; /* 16 */
  int64_t reserved;       /* 0 */
  bool flag1;             /* true */
  bool flag2;             /* true */
  bool flag3;             /* false */
} JoinRoomOption;
RAVO_ENGINE_SIZE(JoinRoomOption, 24, 24);
RAVO_ENGINE_OFFSET(JoinRoomOption, flag1, 16);

typedef struct EngineChannel {
  const char* channelName;
  int64_t volumeScale;
} EngineChannel;
RAVO_ENGINE_SIZE(EngineChannel, 16, 16);
RAVO_ENGINE_OFFSET(EngineChannel, volumeScale, 8);

/* Filled by the engine, texts NUL-terminated. */
typedef struct DevicePerformance {
  double memory;
  int64_t cpuCores;
  int64_t cpuThreads;
  double cpuFrequency;
  char cpuModel[256];
  char gpuModel[256];
  char os[256];
  char osVersion[256];
  char deviceModel[256];
} DevicePerformance;
RAVO_ENGINE_SIZE(DevicePerformance, 1312, 1312);

typedef struct LocalQuality {
  const char* uid;
  int32_t uplink_rtt_quality;
  int32_t uplink_loss_quality;
  int32_t uplink_abs_bw_quality;
  int32_t uplink_rel_bw_quality;
  int32_t uplink_quality;
  int32_t downlink_rtt_quality;
  int32_t downlink_loss_quality;
  int32_t downlink_abs_bw_quality;
  int32_t downlink_rel_bw_quality;
  int32_t downlink_quality;
} LocalQuality;
RAVO_ENGINE_SIZE(LocalQuality, 44, 48);

typedef struct RemoteQuality {
  const char* uid;
  int32_t uplink_quality;
  int32_t downlink_quality;
} RemoteQuality;
RAVO_ENGINE_SIZE(RemoteQuality, 12, 16);

typedef struct VolumeInfo {
  const char* uid;
  int64_t volume;
  int64_t linearVolume;
} VolumeInfo;
RAVO_ENGINE_SIZE(VolumeInfo, 24, 24);
RAVO_ENGINE_OFFSET(VolumeInfo, volume, 8);

typedef struct LocalVolumeInfo {
  const char* uid;
  int64_t volume;
  int64_t smoothVolume;
  int64_t linearVolume;
} LocalVolumeInfo;
RAVO_ENGINE_SIZE(LocalVolumeInfo, 32, 32);

typedef struct SysStats {
  int64_t cpu_cores;
  double cpu_app_usage;
  double cpu_total_usage;
  double memory_usage;
  int64_t full_memory;
  int64_t total_memory_usage;
  int64_t free_memory;
  double memory_ratio;
  double total_memory_ratio;
} SysStats;
RAVO_ENGINE_SIZE(SysStats, 72, 72);

typedef struct BandwidthEstimation {
  int64_t txEstimateBandwidth;
  int32_t txBandwidthStatus;
  int64_t rxEstimateBandwidth;
  int32_t rxBandwidthStatus;
} BandwidthEstimation;
RAVO_ENGINE_SIZE(BandwidthEstimation, 32, 32);
RAVO_ENGINE_OFFSET(BandwidthEstimation, rxEstimateBandwidth, 16);

/* One parameter of a tracking event. */
typedef struct MeriTrackPair {
  const char* key;
  const char* value;
} MeriTrackPair;
RAVO_ENGINE_SIZE(MeriTrackPair, 8, 16);

/* ---- Streams ---- */

/* Description of a video frame; always passed by value. */
typedef struct VideoFrameInfo {
  int32_t field_type; /* 1 for a frame of a screen */
  int32_t format;
  int32_t colorSpace;
  int64_t width;        /* pixels */
  int64_t height;       /* pixels */
  int64_t rotation;     /* passed on as it is */
  int64_t renderTimeMs; /* milliseconds */
  bool flip;
} VideoFrameInfo;
RAVO_ENGINE_SIZE(VideoFrameInfo, 56, 56);
RAVO_ENGINE_OFFSET(VideoFrameInfo, width, 16);
RAVO_ENGINE_OFFSET(VideoFrameInfo, flip, 48);

typedef struct RemoteStreamKey {
  const char* roomId;
  const char* userId;
  int32_t streamIndex; /* 0 for the main stream, 1 for the screen */
} RemoteStreamKey;
RAVO_ENGINE_SIZE(RemoteStreamKey, 12, 24);

/* One published encoding of a stream. */
typedef struct StreamResolution {
  uint64_t width;  /* pixels */
  uint64_t height; /* pixels */
  uint64_t maxKbps;
  uint64_t frameRate; /* frames a second */
  int32_t scaleMode;
  int32_t codecMode;
} StreamResolution;
RAVO_ENGINE_SIZE(StreamResolution, 40, 40);

/* What a subscription has come to. */
typedef struct SubscribeInfo {
  bool subscribeVideo;
  bool subscribeAudio;
  uint64_t videoIndex; /* into the stream's resolutions */
  uint64_t layer;
} SubscribeInfo;
RAVO_ENGINE_SIZE(SubscribeInfo, 24, 24);
RAVO_ENGINE_OFFSET(SubscribeInfo, videoIndex, 8);

/* The encoding that is wanted, one of the published ones; all 0 if none is known. */
typedef struct SubscribeConfig {
  int32_t frameRate; /* frames a second */
  int32_t width;     /* pixels */
  int32_t height;    /* pixels */
  int32_t unused[7]; /* -1 each */
} SubscribeConfig;
RAVO_ENGINE_SIZE(SubscribeConfig, 40, 40);

typedef struct LocalAudioStats {
  double audio_loss_rate;
  int64_t send_kbitrate;
  int64_t record_sample_rate;
  int64_t stats_interval;
  int64_t rtt;
  int64_t num_channels;
  int64_t sent_sample_rate;
  int64_t jitter;
} LocalAudioStats;

typedef struct LocalVideoStats {
  int64_t sent_kbitrate;
  int64_t input_frame_rate;
  int64_t sent_frame_rate;
  int64_t encoder_output_frame_rate;
  int64_t renderer_output_frame_rate;
  int64_t target_kbitrate;
  int64_t target_frame_rate;
  int64_t stats_interval;
  double video_loss_rate;
  int64_t rtt;
  int64_t encoded_bitrate;
  int64_t encoded_frame_width;
  int64_t encoded_frame_height;
  int64_t encoded_frame_count;
  int32_t codec_type;
  bool is_screen;
  int64_t jitter;
} LocalVideoStats;

/* The statistics of streams have records, but nothing registers for them. */
typedef struct LocalStreamStats {
  LocalAudioStats audio_stats;
  LocalVideoStats video_stats;
  int32_t local_tx_quality;
  int32_t local_rx_quality;
  bool is_screen;
} LocalStreamStats;
RAVO_ENGINE_SIZE(LocalStreamStats, 208, 208);

typedef struct RemoteAudioStats {
  double audio_loss_rate;
  int64_t received_kbitrate;
  int64_t stall_count;
  int64_t stall_duration;
  int64_t e2e_delay;
  int64_t playout_sample_rate;
  int64_t stats_interval;
  int64_t rtt;
  int64_t total_rtt;
  int64_t quality;
  int64_t jitter_buffer_delay;
  int64_t num_channels;
  int64_t received_sample_rate;
  int64_t frozen_rate;
  int64_t concealed_samples;
  int64_t concealment_event;
  int64_t dec_sample_rate;
  int64_t dec_duration;
  int64_t jitter;
} RemoteAudioStats;

typedef struct RemoteVideoStats {
  int64_t width;  /* pixels */
  int64_t height; /* pixels */
  double video_loss_rate;
  int64_t received_kbitrate;
  int64_t decoder_output_frame_rate;
  int64_t renderer_output_frame_rate;
  int64_t stall_count;
  int64_t stall_duration;
  int64_t e2e_delay;
  bool is_screen;
  int64_t stats_interval;
  int64_t rtt;
  int64_t frozen_rate;
  int64_t video_index;
  int64_t jitter;
} RemoteVideoStats;

typedef struct RemoteStreamStats {
  const char* uid;
  RemoteAudioStats audio_stats;
  RemoteVideoStats video_stats;
  int32_t remote_tx_quality;
  int32_t remote_rx_quality;
  bool is_screen;
} RemoteStreamStats;
RAVO_ENGINE_SIZE(RemoteStreamStats, 296, 296);

/* ---- Devices ---- */

/* A device. Owns its texts, so that a copy of the bytes outlives the engine's list. Passed by value outside lists. The
 * flags are 0 or 1. */
typedef struct DeviceInfo {
  char deviceName[1024];  /* NUL-terminated, as the two below */
  char deviceId[1024];    /* what SetDevice takes */
  char containerId[1024]; /* empty if there is none */
  int64_t deviceVid;
  int64_t devicePid;
  int32_t deviceType;
  uint8_t reserved1[8]; /* bytes, as the place is not aligned for a 64-bit member */
  uint8_t isBuiltin;
  uint8_t isBluetooth;
  uint8_t isDisplayAudio;
  uint8_t isVirtual;
  uint8_t isUnknown;
  uint8_t canGetVolume;
  uint8_t canSetVolume;
  uint8_t stereoMode;
  uint8_t handsFreeMode;
  uint8_t canMove;
  uint8_t canZoom;
  uint8_t canAutoFraming;
  uint8_t reserved2[8];
} DeviceInfo;
RAVO_ENGINE_SIZE(DeviceInfo, 3120, 3120);
RAVO_ENGINE_OFFSET(DeviceInfo, deviceId, 1024);
RAVO_ENGINE_OFFSET(DeviceInfo, containerId, 2048);
RAVO_ENGINE_OFFSET(DeviceInfo, deviceVid, 3072);
RAVO_ENGINE_OFFSET(DeviceInfo, devicePid, 3080);
RAVO_ENGINE_OFFSET(DeviceInfo, deviceType, 3088);
RAVO_ENGINE_OFFSET(DeviceInfo, reserved1, 3092);
RAVO_ENGINE_OFFSET(DeviceInfo, isBuiltin, 3100);
RAVO_ENGINE_OFFSET(DeviceInfo, canAutoFraming, 3111);
RAVO_ENGINE_OFFSET(DeviceInfo, reserved2, 3112);

/* A list of the engine's own, given back through the partner entry of the one that filled it. The pointer may be null
 * if the count is 0. */
typedef struct DeviceList {
  DeviceInfo* devices;
  int32_t count;
} DeviceList;
RAVO_ENGINE_SIZE(DeviceList, 8, 16);

/* How to play a file. */
typedef struct AudioMixingOption {
  int32_t reserved1; /* 0 */
  int32_t reserved2; /* 0 */
  int32_t value;     /* the client's number */
  int32_t reserved3; /* 0 */
} AudioMixingOption;
RAVO_ENGINE_SIZE(AudioMixingOption, 16, 16);

/* ---- Screen sharing ---- */

/* Names windows to leave out of a share, or to take into it. */
typedef struct EngineIgnoreWindowParam {
  int64_t ignoreType;        /* how the window is named */
  const char* handleType;    /* of the native handle; empty if there is none */
  const int32_t* handleData; /* the native handle; may be null if the count is 0 */
  int32_t handleDataCount;
  int64_t ignoreTypeByPid; /* a second selector, for windowPid */
  int64_t windowPid;
  const char* const* windowTitles; /* may be null if the count is 0 */
  int32_t windowTitleCount;
  int64_t windowLevel;
  int64_t windowHandleIntValue; /* the native handle as a number */
} EngineIgnoreWindowParam;
RAVO_ENGINE_SIZE(EngineIgnoreWindowParam, 64, 80);

typedef struct ResolutionLimit {
  int64_t maxResolutionWidth;  /* pixels */
  int64_t maxResolutionHeight; /* pixels */
} ResolutionLimit;
RAVO_ENGINE_SIZE(ResolutionLimit, 16, 16);

typedef struct ScreenCaptureConfig {
  int64_t scFramePublishKeepAliveIntervalMs;
  int64_t scMovedWindowStableKeepMinDurationTimeMs;
} ScreenCaptureConfig;
RAVO_ENGINE_SIZE(ScreenCaptureConfig, 16, 16);

typedef struct VideoCaptureConfig {
  int64_t width;     /* pixels */
  int64_t height;    /* pixels */
  int64_t frameRate; /* frames a second */
  int64_t capturePreference;
} VideoCaptureConfig;
RAVO_ENGINE_SIZE(VideoCaptureConfig, 32, 32);

typedef struct ScreenRect {
  int64_t x; /* pixels, as all four */
  int64_t y;
  int64_t width;
  int64_t height;
} ScreenRect;
RAVO_ENGINE_SIZE(ScreenRect, 32, 32);

typedef struct DesktopInfo {
  int64_t id;
  int64_t handle;
  int64_t primary; /* a number: 1 for the primary desktop */
  int64_t x;       /* pixels, as the next three */
  int64_t y;
  int64_t width;
  int64_t height;
} DesktopInfo;
RAVO_ENGINE_SIZE(DesktopInfo, 56, 56);

typedef struct DesktopList {
  DesktopInfo* desktops;
  int32_t count;
} DesktopList;
RAVO_ENGINE_SIZE(DesktopList, 8, 16);

/* A window; each of its strings may be null. */
typedef struct WindowInfo {
  int64_t id;
  int64_t pid;
  int64_t handle;
  const char* application;
  const char* title;
  int64_t x; /* pixels, as the next three */
  int64_t y;
  int64_t width;
  int64_t height;
  const char* icon;
  const char* url;
} WindowInfo;
RAVO_ENGINE_SIZE(WindowInfo, 72, 88);

typedef struct WindowList {
  WindowInfo* windows;
  int32_t count;
} WindowList;
RAVO_ENGINE_SIZE(WindowList, 8, 16);

/* A picture of a desktop or window. */
typedef struct Thumbnail {
  int64_t id;      /* of the desktop or window */
  const char* val; /* the picture as text, in the engine's encoding; may be null */
} Thumbnail;
RAVO_ENGINE_SIZE(Thumbnail, 16, 16);

#endif
