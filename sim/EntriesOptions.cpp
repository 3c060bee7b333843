// Bringing the engine up and down, and its options. What the options ask of the real engine is journalled; those that
// shape what a client sees of devices and pictures work here too.
#include <string>
#include <vector>

#include "Callbacks.h"
#include "Devices.h"
#include "Entry.h"
#include "LocalMedia.h"
#include "Params.h"
#include "Room.h"
#include "Screens.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::chrono::milliseconds kCloseBound{3000};

void Init(std::int64_t kind, std::int64_t flags) {
  if (kind != 3 || flags != 0) Journal::Get().Violation("VemoraInit takes 3 and 0");
}

void InitRtc() {
  Stage::Get().Now([] { Emit<&OnRtcSdkInit>(); });
}

void BlackList(const char* const* names, std::int32_t count) {
  Devices::Get().SetBlackList({names, names + count});
}

void SameAsSystem(const EngineDeviceSameAsSystemConfig& config) {
  Devices::Get().SetSameAsSystem(config.deviceId, config.deviceName, config.fallbackDeviceName);
}

void Destroy() {
  if (!CallbackGate::Close(kCloseBound)) Journal::Get().Violation("a callback did not come back");
  Room::Get().Leave();
  LocalMedia::Get().SetPreview(false);
  Devices::Get().ReportLosses();
  Screens::Get().ReportLosses();
}

}  // namespace
}  // namespace sim

SIM_ENTRY(2, VemoraInit, &sim::Init)
SIM_ENTRY(0, VemoraInitRtc, &sim::InitRtc)
SIM_PLAIN(0, VemoraInitDevice)
SIM_ENTRY(0, DestroyServer, &sim::Destroy)

SIM_PLAIN(1, SetMicrosoftLibPath)
SIM_PLAIN(1, ServerOptionSetServerName)
SIM_PLAIN(1, ServerOptionSetAppId)
SIM_PLAIN(1, ServerOptionSetProjectKey)
SIM_PLAIN(1, ServerOptionSetUserId)
SIM_PLAIN(1, ServerOptionSetDeviceId)
SIM_PLAIN(1, ServerOptionSetActiveSpeakerConfig)
SIM_PLAIN(1, ServerOptionSetLogPath)
SIM_PLAIN(1, ServerOptionSetLogVersion)
SIM_PLAIN(1, ServerOptionSetEnableDeviceRemember)
SIM_PLAIN(1, ServerOptionSetEnableInitDevice)
SIM_PLAIN(1, ServerOptionSetEnableHotSwapDeviceAutoChange)
SIM_PLAIN(1, ServerOptionSetEnableDelayDeviceAddedAndRemoved)
SIM_PLAIN(1, ServerOptionSetDeviceManagerConfig)
SIM_PLAIN(1, ServerOptionSetResourcePath)
SIM_PLAIN(1, ServerOptionSetResourceEnv)
SIM_PLAIN(1, ServerOptionSetEffectDownloadConfig)
SIM_PLAIN(2, ServerOptionSetVideoProfiles)
SIM_PLAIN(1, ServerOptionSetScreenProfile)
SIM_PLAIN(1, ServerOptionSetAppVersion)
SIM_ENTRY(2, ServerOptionSetDeviceNameBlackList, &sim::BlackList)
SIM_PLAIN(2, ServerOptionSetMemDeviceNameBlackList)
SIM_PLAIN(2, ServerOptionSetIgnoreDefaultDeviceIds)
SIM_PLAIN(1, ServerOptionSetExcludeDeviceType)
SIM_PLAIN(1, ServerOptionSetLeaveMeetingConfig)
SIM_ENTRY(1, ServerOptionSetRTCParams, [](const char* text) { sim::AddParams(text); })
SIM_PLAIN(1, ServerOptionSetEnableVideoEnhance)
SIM_ENTRY(1, ServerOptionSetEnableSameAsSystem, [](bool enable) { sim::Devices::Get().EnableSameAsSystem(enable); })
SIM_ENTRY(1, ServerOptionSetDeviceSameAsSystemConfig, &sim::SameAsSystem)
SIM_PLAIN(1, ServerOptionSetDefaultEnableLocalVideo)
SIM_PLAIN(1, ServerOptionSetRtcFgConfig)
SIM_PLAIN(1, ServerOptionSetEnableAutoPublish)
SIM_PLAIN(1, ServerOptionSetEnableRestartDaemon)
SIM_PLAIN(2, ServerOptionSetProxyConfig)
SIM_PLAIN(1, ServerOptionSetEnableShareMemorySlots)
SIM_PLAIN(1, ServerOptionSetEnableNv12)
SIM_PLAIN(1, ServerOptionSetEnableCvPixelBuffer)
