#pragma once

#include <ravo/engine_records.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/Fields.h"

namespace TESSARIN_COMMON {

// Three of the nested records go to the engine as they are.
using ::ActiveSpeakerConfig;
using ::LeaveMeetingConfig;
using ::VideoProfile;

// The start-up options: one record, read from the JSON text of the host and written back into the server information.
// Member names are the JSON keys. Every key is optional and keeps its default. The two directions share the field
// lists below; enumerations of the client are held in 64 bits and written in 32.

struct BeautyEffectParam {
  bool enable = false;
  double smooth = 0.0;
  double white = 0.0;
  double sharp = 0.0;
};

struct DeviceManagerConfig {
  bool enableHID = false;
  bool enableCaptureCard = false;
};

struct OpenGLLibraryPath {
  std::string glv1;
  std::string glesv2;
};

struct QzNetConfig {
  std::string qncConfigPath;
  std::string qznetLibPath;
};

struct EffectDownloadConfig {
  std::string accessKey;
  std::string host;
  std::string platform;
  std::string deviceType;
  std::string channel;
  std::string deviceId;
};

struct AddonLoader {
  std::string remoteWindowManager;
  std::string echoTest;
  std::string audioCapture;
  std::string uvc;
};

struct DeviceSameAsSystemConfig {
  std::string sameAsSystemDeviceId = "SAME_AS_SYSTEM_ID";
  std::string sameAsSystemDeviceName = "SAME_AS_SYSTEM({{deviceId}})";
  std::string sameAsSystemFallbackDeviceName = "SAME_AS_SYSTEM";
};

// Milliseconds. Read, stored and written back; the monitor's period is a constant of its own.
struct MonitorExtendConfig {
  std::int64_t in_meeting_snap_duration = 60000;
  std::int64_t in_meeting_log_duration = 300000;
  std::int64_t not_meeting_snap_duration = 300000;
  std::int64_t not_meeting_log_duration = 1800000;
  std::int64_t not_meeting_report_duration = 3600000;
  bool enable_not_meeting_monitor = false;
};

struct ProxyConfig {
  std::int64_t proxyType = 0;
  std::string proxyIp;
  std::int64_t proxyPort = 0;
  // The engine's row has these two; no key sets them, so they go down empty.
  std::string unused1;
  std::string unused2;
};

struct VendorTypeConfig {
  std::int64_t vendorType = 0;
  bool isMediaOversea = false;
  bool isDataOversea = false;
  std::string serviceType;
};

struct SentryOption {
  std::string productName;
};

struct ServerOption {
  std::string serverName = "TessarinVemora";
  std::string ipcPath;
  std::string appId;
  std::int32_t mainProcessPid = 0;
  std::string projectKey;
  std::string hostName;
  std::string userId;
  std::string deviceId;
  ActiveSpeakerConfig activeSpeakerConfig{};
  std::int64_t subscribeMaxNumber = 10;
  std::int64_t subscribeDebounceTime = 300;
  BeautyEffectParam beautyEffectParam;
  std::string serverTitle;
  bool enableAutoSubscribe = false;
  std::string logName = "Vemora";
  std::string logPath;
  std::int64_t logVersion = 0;
  std::string RTCLogPath;
  bool isRelease = false;
  bool enableLib = false;
  bool enableDebug = false;
  bool enableRTCLog = false;
  bool enableTessarinDevice = true;
  bool enableDeviceRemember = false;
  bool enableInitDevice = true;
  bool enableHotSwapDeviceAutoChange = true;
  bool enableDelayDeviceAddedAndRemoved = false;
  bool enableKeyboardCancellation = false;
  bool enableBackgroundBlur = false;
  DeviceManagerConfig deviceManagerConfig;
  OpenGLLibraryPath openGLLibraryPath;
  QzNetConfig qzNetConfig;
  std::string resourcePath;
  std::int64_t resourceEnv = 1;
  EffectDownloadConfig effectDownloadConfig;
  bool enableRNNoise = true;
  bool enableFaceBeauty = false;
  std::vector<VideoProfile> videoProfiles;
  VideoProfile screenProfile{};
  std::int64_t audioProfile = 0;
  std::string appVersion;
  std::string pcSdkVersion;
  std::string rtcSdkVersion;
  std::string vemoraVersion;
  std::vector<std::string> deviceNameBlackList;
  std::vector<std::string> memDeviceNameBlackList;
  std::vector<std::string> ignoreDefaultDeviceIds{"TessarinAudioDevice_UID"};
  std::int64_t excludeDeviceType = 0;
  LeaveMeetingConfig leaveMeetingConfig{};
  std::string sentryDSN;
  std::int64_t sleepTime = 0;
  AddonLoader addonLoader;
  std::string backgroundImage;
  std::int64_t dynamicLayoutType = 0;
  bool enableVideoEnhance = false;
  bool enableSameAsSystem = false;
  DeviceSameAsSystemConfig deviceSameAsSystemConfig;
  bool defaultEnableLocalVideo = true;
  bool enableAutoMonitor = true;
  MonitorExtendConfig monitorExtendConfig;
  bool enableNativeUI = false;
  std::string manuallyDylibPath;
  bool isNativeDovra = false;
  std::string rtcFgConfig;
  std::int64_t effectProductLine = 0;
  bool enableAutoPublish = true;
  std::string productLine;
  bool enableRestartDaemon = false;
  bool enableRouteStdoutToLog = false;
  bool enableRouteStderrToLog = false;
  bool isOverseaDovraPkg = false;
  bool enableRavoModuleParallelLoad = false;
  bool enableShareEffectContext = false;
  bool controlBarSimplifyEnable = false;
  std::vector<ProxyConfig> proxyConfigs;
  VendorTypeConfig vendorTypeConfig;
  bool enableShareMemorySlots = true;
  bool enableVideoCallback = false;
  bool enableNV12 = false;
  bool enableCvPixelBufferNV12 = false;
  bool enableCommonVideo = false;
  std::string advancedAudioWhiteList;
  bool enableVideoSink = false;
  std::string rtcParams;
  bool enableRtcDeviceManage = false;
  SentryOption sentryOption;
};

// The keys that a running server reads again. Part of them it applies, the others it drops.
struct ServerOptionUpdate {
  ActiveSpeakerConfig activeSpeakerConfig{};
  VendorTypeConfig vendorTypeConfig;
  std::vector<ProxyConfig> proxyConfigs;
  std::int32_t subscribeMaxNumber = 0;
  std::int32_t subscribeDebounceTime = 0;
  BeautyEffectParam beautyEffectParam;
  std::string serverTitle;
  std::vector<VideoProfile> videoProfiles;
  VideoProfile screenProfile{};
  std::string productLine;
  std::int64_t audioProfile = 0;
  bool enableLib = false;
  std::string advancedAudioWhiteList;
  bool enableNV12 = false;
  bool enableCvPixelBufferNV12 = false;
  std::string rtcParams;
};

// Reads the options from their text. Fails with a std::runtime_error that names the key.
[[nodiscard]] ServerOption ParseServerOption(std::string_view text);

template <>
inline constexpr auto kFields<ActiveSpeakerConfig> = Fields(
    Field{"tickTime", &ActiveSpeakerConfig::tickTime}, Field{"sampleInterval", &ActiveSpeakerConfig::sampleInterval},
    Field{"maxRecordTime", &ActiveSpeakerConfig::maxRecordTime},
    Field{"minSpeakerVolume", &ActiveSpeakerConfig::minSpeakerVolume},
    Field{"timeBase", &ActiveSpeakerConfig::timeBase}, Field{"rankBase", &ActiveSpeakerConfig::rankBase});

template <>
inline constexpr auto kFields<BeautyEffectParam> = Fields(Field{"enable", &BeautyEffectParam::enable},
                                                          Field{"smooth", &BeautyEffectParam::smooth},
                                                          Field{"white", &BeautyEffectParam::white},
                                                          Field{"sharp", &BeautyEffectParam::sharp});

template <>
inline constexpr auto kFields<DeviceManagerConfig> = Fields(Field{"enableHID", &DeviceManagerConfig::enableHID},
                                                            Field{"enableCaptureCard",
                                                                  &DeviceManagerConfig::enableCaptureCard});

template <>
inline constexpr auto kFields<OpenGLLibraryPath> = Fields(Field{"glv1", &OpenGLLibraryPath::glv1},
                                                          Field{"glesv2", &OpenGLLibraryPath::glesv2});

template <>
inline constexpr auto kFields<QzNetConfig> = Fields(Field{"qncConfigPath", &QzNetConfig::qncConfigPath},
                                                    Field{"qznetLibPath", &QzNetConfig::qznetLibPath});

template <>
inline constexpr auto kFields<EffectDownloadConfig> = Fields(Field{"accessKey", &EffectDownloadConfig::accessKey},
                                                             Field{"host", &EffectDownloadConfig::host},
                                                             Field{"platform", &EffectDownloadConfig::platform},
                                                             Field{"deviceType", &EffectDownloadConfig::deviceType},
                                                             Field{"channel", &EffectDownloadConfig::channel},
                                                             Field{"deviceId", &EffectDownloadConfig::deviceId});

template <>
inline constexpr auto kFields<VideoProfile> =
    Fields(Field{"width", &VideoProfile::width}, Field{"height", &VideoProfile::height},
           Field{"maxKbps", &VideoProfile::maxKbps}, Field{"frameRate", &VideoProfile::frameRate},
           Field{"scaleMode", &VideoProfile::scaleMode, Narrow::Int32OnWrite},
           Field{"codecMode", &VideoProfile::codecMode, Narrow::Int32OnWrite});

template <>
inline constexpr auto kFields<LeaveMeetingConfig> =
    Fields(Field{"autoDestroyRTCEngine", &LeaveMeetingConfig::autoDestroyRTCEngine},
           Field{"autoMuteLocalVideo", &LeaveMeetingConfig::autoMuteLocalVideo},
           Field{"destroyTimeoutDuration", &LeaveMeetingConfig::destroyTimeoutDuration});

template <>
inline constexpr auto kFields<AddonLoader> = Fields(Field{"remoteWindowManager", &AddonLoader::remoteWindowManager},
                                                    Field{"echoTest", &AddonLoader::echoTest},
                                                    Field{"audioCapture", &AddonLoader::audioCapture},
                                                    Field{"uvc", &AddonLoader::uvc});

template <>
inline constexpr auto kFields<DeviceSameAsSystemConfig> =
    Fields(Field{"sameAsSystemDeviceId", &DeviceSameAsSystemConfig::sameAsSystemDeviceId},
           Field{"sameAsSystemDeviceName", &DeviceSameAsSystemConfig::sameAsSystemDeviceName},
           Field{"sameAsSystemFallbackDeviceName", &DeviceSameAsSystemConfig::sameAsSystemFallbackDeviceName});

template <>
inline constexpr auto kFields<MonitorExtendConfig> =
    Fields(Field{"in_meeting_snap_duration", &MonitorExtendConfig::in_meeting_snap_duration},
           Field{"in_meeting_log_duration", &MonitorExtendConfig::in_meeting_log_duration},
           Field{"not_meeting_snap_duration", &MonitorExtendConfig::not_meeting_snap_duration},
           Field{"not_meeting_log_duration", &MonitorExtendConfig::not_meeting_log_duration},
           Field{"not_meeting_report_duration", &MonitorExtendConfig::not_meeting_report_duration},
           Field{"enable_not_meeting_monitor", &MonitorExtendConfig::enable_not_meeting_monitor});

template <>
inline constexpr auto kFields<ProxyConfig> = Fields(Field{"proxyType", &ProxyConfig::proxyType, Narrow::Int32OnWrite},
                                                    Field{"proxyIp", &ProxyConfig::proxyIp},
                                                    Field{"proxyPort", &ProxyConfig::proxyPort});

template <>
inline constexpr auto kFields<VendorTypeConfig> = Fields(Field{"vendorType", &VendorTypeConfig::vendorType,
                                                               Narrow::Int32OnWrite},
                                                         Field{"isMediaOversea", &VendorTypeConfig::isMediaOversea},
                                                         Field{"isDataOversea", &VendorTypeConfig::isDataOversea},
                                                         Field{"serviceType", &VendorTypeConfig::serviceType});

template <>
inline constexpr auto kFields<SentryOption> = Fields(Field{"productName", &SentryOption::productName});

template <>
inline constexpr auto kFields<ServerOption> = Fields(
    Field{"serverName", &ServerOption::serverName}, Field{"ipcPath", &ServerOption::ipcPath},
    Field{"appId", &ServerOption::appId}, Field{"mainProcessPid", &ServerOption::mainProcessPid},
    Field{"projectKey", &ServerOption::projectKey}, Field{"hostName", &ServerOption::hostName},
    Field{"userId", &ServerOption::userId}, Field{"deviceId", &ServerOption::deviceId},
    Field{"activeSpeakerConfig", &ServerOption::activeSpeakerConfig},
    Field{"subscribeMaxNumber", &ServerOption::subscribeMaxNumber},
    Field{"subscribeDebounceTime", &ServerOption::subscribeDebounceTime},
    Field{"beautyEffectParam", &ServerOption::beautyEffectParam}, Field{"serverTitle", &ServerOption::serverTitle},
    Field{"enableAutoSubscribe", &ServerOption::enableAutoSubscribe}, Field{"logName", &ServerOption::logName},
    Field{"logPath", &ServerOption::logPath}, Field{"logVersion", &ServerOption::logVersion, Narrow::Int32OnWrite},
    Field{"RTCLogPath", &ServerOption::RTCLogPath}, Field{"isRelease", &ServerOption::isRelease},
    Field{"enableLib", &ServerOption::enableLib}, Field{"enableDebug", &ServerOption::enableDebug},
    Field{"enableRTCLog", &ServerOption::enableRTCLog},
    Field{"enableTessarinDevice", &ServerOption::enableTessarinDevice},
    Field{"enableDeviceRemember", &ServerOption::enableDeviceRemember},
    Field{"enableInitDevice", &ServerOption::enableInitDevice},
    Field{"enableHotSwapDeviceAutoChange", &ServerOption::enableHotSwapDeviceAutoChange},
    Field{"enableDelayDeviceAddedAndRemoved", &ServerOption::enableDelayDeviceAddedAndRemoved},
    Field{"enableKeyboardCancellation", &ServerOption::enableKeyboardCancellation},
    Field{"enableBackgroundBlur", &ServerOption::enableBackgroundBlur},
    Field{"deviceManagerConfig", &ServerOption::deviceManagerConfig},
    Field{"openGLLibraryPath", &ServerOption::openGLLibraryPath}, Field{"qzNetConfig", &ServerOption::qzNetConfig},
    Field{"resourcePath", &ServerOption::resourcePath},
    Field{"resourceEnv", &ServerOption::resourceEnv, Narrow::Int32OnWrite},
    Field{"effectDownloadConfig", &ServerOption::effectDownloadConfig},
    Field{"enableRNNoise", &ServerOption::enableRNNoise}, Field{"enableFaceBeauty", &ServerOption::enableFaceBeauty},
    Field{"videoProfiles", &ServerOption::videoProfiles}, Field{"screenProfile", &ServerOption::screenProfile},
    Field{"audioProfile", &ServerOption::audioProfile, Narrow::Int32OnWrite},
    Field{"appVersion", &ServerOption::appVersion}, Field{"pcSdkVersion", &ServerOption::pcSdkVersion},
    Field{"rtcSdkVersion", &ServerOption::rtcSdkVersion}, Field{"vemoraVersion", &ServerOption::vemoraVersion},
    Field{"deviceNameBlackList", &ServerOption::deviceNameBlackList},
    Field{"memDeviceNameBlackList", &ServerOption::memDeviceNameBlackList},
    Field{"ignoreDefaultDeviceIds", &ServerOption::ignoreDefaultDeviceIds},
    Field{"excludeDeviceType", &ServerOption::excludeDeviceType, Narrow::Int32OnWrite},
    Field{"leaveMeetingConfig", &ServerOption::leaveMeetingConfig}, Field{"sentryDSN", &ServerOption::sentryDSN},
    Field{"sleepTime", &ServerOption::sleepTime}, Field{"addonLoader", &ServerOption::addonLoader},
    Field{"backgroundImage", &ServerOption::backgroundImage},
    Field{"dynamicLayoutType", &ServerOption::dynamicLayoutType, Narrow::Int32OnWrite},
    Field{"enableVideoEnhance", &ServerOption::enableVideoEnhance},
    Field{"enableSameAsSystem", &ServerOption::enableSameAsSystem},
    Field{"deviceSameAsSystemConfig", &ServerOption::deviceSameAsSystemConfig},
    Field{"defaultEnableLocalVideo", &ServerOption::defaultEnableLocalVideo},
    Field{"enableAutoMonitor", &ServerOption::enableAutoMonitor},
    Field{"monitorExtendConfig", &ServerOption::monitorExtendConfig},
    Field{"enableNativeUI", &ServerOption::enableNativeUI},
    Field{"manuallyDylibPath", &ServerOption::manuallyDylibPath}, Field{"isNativeDovra", &ServerOption::isNativeDovra},
    Field{"rtcFgConfig", &ServerOption::rtcFgConfig},
    Field{"effectProductLine", &ServerOption::effectProductLine, Narrow::Int32OnWrite},
    Field{"enableAutoPublish", &ServerOption::enableAutoPublish}, Field{"productLine", &ServerOption::productLine},
    Field{"enableRestartDaemon", &ServerOption::enableRestartDaemon},
    Field{"enableRouteStdoutToLog", &ServerOption::enableRouteStdoutToLog},
    Field{"enableRouteStderrToLog", &ServerOption::enableRouteStderrToLog},
    Field{"isOverseaDovraPkg", &ServerOption::isOverseaDovraPkg},
    Field{"enableRavoModuleParallelLoad", &ServerOption::enableRavoModuleParallelLoad},
    Field{"enableShareEffectContext", &ServerOption::enableShareEffectContext},
    Field{"controlBarSimplifyEnable", &ServerOption::controlBarSimplifyEnable},
    Field{"proxyConfigs", &ServerOption::proxyConfigs}, Field{"vendorTypeConfig", &ServerOption::vendorTypeConfig},
    Field{"enableShareMemorySlots", &ServerOption::enableShareMemorySlots},
    Field{"enableVideoCallback", &ServerOption::enableVideoCallback}, Field{"enableNV12", &ServerOption::enableNV12},
    Field{"enableCvPixelBufferNV12", &ServerOption::enableCvPixelBufferNV12},
    Field{"enableCommonVideo", &ServerOption::enableCommonVideo},
    Field{"advancedAudioWhiteList", &ServerOption::advancedAudioWhiteList},
    Field{"enableVideoSink", &ServerOption::enableVideoSink}, Field{"rtcParams", &ServerOption::rtcParams},
    Field{"enableRtcDeviceManage", &ServerOption::enableRtcDeviceManage},
    Field{"sentryOption", &ServerOption::sentryOption});

template <>
inline constexpr auto kFields<ServerOptionUpdate> = Fields(
    Field{"activeSpeakerConfig", &ServerOptionUpdate::activeSpeakerConfig},
    Field{"vendorTypeConfig", &ServerOptionUpdate::vendorTypeConfig},
    Field{"proxyConfigs", &ServerOptionUpdate::proxyConfigs},
    Field{"subscribeMaxNumber", &ServerOptionUpdate::subscribeMaxNumber},
    Field{"subscribeDebounceTime", &ServerOptionUpdate::subscribeDebounceTime},
    Field{"beautyEffectParam", &ServerOptionUpdate::beautyEffectParam},
    Field{"serverTitle", &ServerOptionUpdate::serverTitle}, Field{"videoProfiles", &ServerOptionUpdate::videoProfiles},
    Field{"screenProfile", &ServerOptionUpdate::screenProfile}, Field{"productLine", &ServerOptionUpdate::productLine},
    Field{"audioProfile", &ServerOptionUpdate::audioProfile}, Field{"enableLib", &ServerOptionUpdate::enableLib},
    Field{"advancedAudioWhiteList", &ServerOptionUpdate::advancedAudioWhiteList},
    Field{"enableNV12", &ServerOptionUpdate::enableNV12},
    Field{"enableCvPixelBufferNV12", &ServerOptionUpdate::enableCvPixelBufferNV12},
    Field{"rtcParams", &ServerOptionUpdate::rtcParams});

}  // namespace TESSARIN_COMMON
