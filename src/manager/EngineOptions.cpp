#include "EngineOptions.h"

#include <cJSON.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

#include "engine/EngineApi.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_COMMON::ServerOption;
using TESSARIN_LOG::Log;

const char* Word(bool value) {
  return value ? "true" : "false";
}

constexpr std::size_t kParamBytes = 1024;  // a longer composed text is cut

template <class... Args>
std::string Composed(const char* format, Args... args) {
  std::array<char, kParamBytes> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, args...);
  return buffer.data();
}

std::vector<const char*> Pointers(const std::vector<std::string>& texts) {
  std::vector<const char*> pointers;
  pointers.reserve(texts.size());
  for (const auto& text : texts) pointers.push_back(text.c_str());
  return pointers;
}

template <class List>
std::int32_t Count(const List& list) {
  return static_cast<std::int32_t>(list.size());
}

struct DeleteJson {
  void operator()(cJSON* root) const { cJSON_Delete(root); }
};

// The name without its prefix and leading blanks; false for a member with none of the prefixes.
bool FgName(std::string_view member, std::string_view& name) {
  for (const std::string_view prefix : {"tessarin.callmeeting.client.rtc.", "room.fg.rtc.", "share.fg.rtc."}) {
    if (!member.starts_with(prefix)) continue;
    name = member.substr(prefix.size());
    name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
    return true;
  }
  return false;
}

bool FgValue(const cJSON* item, std::string& value) {
  if (cJSON_IsBool(item) != 0) {
    value = Word(cJSON_IsTrue(item) != 0);
  } else if (cJSON_IsString(item) != 0) {
    value = item->valuestring;
  } else if (cJSON_IsNumber(item) != 0) {
    value = std::to_string(item->valueint);  // the fraction is lost
  } else {
    return false;
  }
  return true;
}

void SetIdentity(const EngineApi& api, const ServerOption& option) {
  api.ServerOptionSetAppId(option.appId.c_str());
  api.ServerOptionSetServerName(option.serverName.c_str());
  api.ServerOptionSetProjectKey(option.projectKey.c_str());
  api.ServerOptionSetUserId(option.userId.c_str());
  api.ServerOptionSetDeviceId(option.deviceId.c_str());
  api.ServerOptionSetActiveSpeakerConfig(option.activeSpeakerConfig);
  api.ServerOptionSetLogPath(option.logPath.c_str());
  api.ServerOptionSetLogVersion(option.logVersion);
}

void SetDevicesAndResources(const EngineApi& api, const ServerOption& option) {
  api.ServerOptionSetEnableDeviceRemember(option.enableDeviceRemember);
  api.ServerOptionSetEnableInitDevice(option.enableInitDevice);
  api.ServerOptionSetEnableHotSwapDeviceAutoChange(option.enableHotSwapDeviceAutoChange);
  api.ServerOptionSetEnableDelayDeviceAddedAndRemoved(option.enableDelayDeviceAddedAndRemoved);
  const auto& device = option.deviceManagerConfig;
  api.ServerOptionSetDeviceManagerConfig(
      static_cast<std::uint16_t>((device.enableHID ? 1 : 0) | (device.enableCaptureCard ? 0x100 : 0)));
  api.ServerOptionSetResourcePath(option.resourcePath.c_str());
  api.ServerOptionSetResourceEnv(option.resourceEnv);
  const auto& effect = option.effectDownloadConfig;
  api.ServerOptionSetEffectDownloadConfig({effect.accessKey.c_str(), effect.host.c_str(), effect.platform.c_str(),
                                           effect.deviceType.c_str(), effect.channel.c_str(), effect.deviceId.c_str()});
  SetVideoProfiles(option.videoProfiles);
  api.ServerOptionSetScreenProfile(option.screenProfile);
  api.ServerOptionSetAppVersion(option.appVersion.c_str());
}

void SetDeviceLists(const EngineApi& api, const ServerOption& option) {
  const auto black = Pointers(option.deviceNameBlackList);
  api.ServerOptionSetDeviceNameBlackList(black.data(), Count(black));
  // Again the first list: `memDeviceNameBlackList` is read and goes no further. Wanted.
  api.ServerOptionSetMemDeviceNameBlackList(black.data(), Count(black));
  const auto ignored = Pointers(option.ignoreDefaultDeviceIds);
  api.ServerOptionSetIgnoreDefaultDeviceIds(ignored.data(), Count(ignored));
  api.ServerOptionSetExcludeDeviceType(option.excludeDeviceType);
}

void SetMeeting(const EngineApi& api, const ServerOption& option) {
  api.ServerOptionSetLeaveMeetingConfig(option.leaveMeetingConfig);
  api.ServerOptionSetRTCParams(option.rtcParams.empty() ? "{}" : option.rtcParams.c_str());
  api.ServerOptionSetEnableVideoEnhance(option.enableVideoEnhance);
  api.ServerOptionSetEnableSameAsSystem(option.enableSameAsSystem);
  const auto& same = option.deviceSameAsSystemConfig;
  api.ServerOptionSetDeviceSameAsSystemConfig({same.sameAsSystemDeviceId.c_str(), same.sameAsSystemDeviceName.c_str(),
                                               same.sameAsSystemFallbackDeviceName.c_str()});
  api.ServerOptionSetDefaultEnableLocalVideo(option.defaultEnableLocalVideo);
  api.ServerOptionSetRtcFgConfig(option.rtcFgConfig.c_str());
  api.ServerOptionSetEnableAutoPublish(option.enableAutoPublish);
  api.ServerOptionSetEnableRestartDaemon(option.enableRestartDaemon);
}

void SetParams(const EngineApi& api, const ServerOption& option) {
  Log("setHostName: {}", option.hostName);
  api.ServerOptionSetRTCParams(option.hostName.c_str());  // a parameter text, whatever the key is called
  if (const std::string fg = FgParams(option.rtcFgConfig); !fg.empty()) api.ServerOptionSetRTCParams(fg.c_str());
  const auto& vendor = option.vendorTypeConfig;
  Log("ServerOptionSetVendorType vendorType:{}, isMediaOversea:{},isDataOversea:{}, serviceType:{}", vendor.vendorType,
      vendor.isMediaOversea, vendor.isDataOversea, vendor.serviceType);
  const std::string params = VendorParams(vendor);
  Log("[SetVendorType]: vendor json:{}", params);
  api.ServerOptionSetRTCParams(params.c_str());
  SetProxyConfigs(option.proxyConfigs);
}

// Frames go through our own slots, in one format: the engine hears false whatever the options say.
void SetFrameDelivery(const EngineApi& api, const ServerOption& option) {
  Log("RavoManager::setServerOption shareMem:{}, enableNv12:{}, enableCvPixBuf:{}", option.enableShareMemorySlots,
      option.enableNV12, option.enableCvPixelBufferNV12);
  api.ServerOptionSetEnableShareMemorySlots(false);
  api.ServerOptionSetEnableNv12(false);
  api.ServerOptionSetEnableCvPixelBuffer(false);
  api.ServerOptionSetRTCParams(R"({"rtc.srtp_profile":8})");
  if (!option.deviceId.empty()) api.ServerOptionSetRTCParams(DeviceIdParams(option.deviceId).c_str());
}

}  // namespace

void setServerOption(const ServerOption& option) {
  const auto& api = EngineApi::GetInstance();
  SetIdentity(api, option);
  SetDevicesAndResources(api, option);
  SetDeviceLists(api, option);
  SetMeeting(api, option);
  SetParams(api, option);
  SetFrameDelivery(api, option);
}

void SetVideoProfiles(const std::vector<TESSARIN_COMMON::VideoProfile>& profiles) {
  EngineApi::GetInstance().ServerOptionSetVideoProfiles(profiles.data(), Count(profiles));
}

void SetProxyConfigs(const std::vector<TESSARIN_COMMON::ProxyConfig>& proxies) {
  std::vector<EngineProxyConfig> rows;
  rows.reserve(proxies.size());
  for (const auto& proxy : proxies) {
    rows.push_back(
        {proxy.proxyType, proxy.proxyIp.c_str(), proxy.proxyPort, proxy.unused1.c_str(), proxy.unused2.c_str()});
  }
  EngineApi::GetInstance().ServerOptionSetProxyConfig(rows.data(), Count(rows));
}

std::string VendorParams(const TESSARIN_COMMON::VendorTypeConfig& vendor) {
  constexpr std::int64_t kVendorWithoutEnv = 3;
  return Composed(
      "\n"
      "              {\n"
      "                \"rtc.channel_profile\":16,\n"
      "                \"rtc.env\" : %d,\n"
      "                \"rtc.is_oversea\":\n"
      "                {\n"
      "                  \"isMediaOversea\":%s,\n"
      "                  \"isDataOversea\":%s\n"
      "                }\n"
      "              }\n"
      "            ",
      vendor.vendorType == kVendorWithoutEnv ? 0 : 2, Word(vendor.isMediaOversea), Word(vendor.isDataOversea));
}

std::string FgParams(const std::string& rtcFgConfig) {
  if (rtcFgConfig.empty()) return "";
  const std::unique_ptr<cJSON, DeleteJson> root(cJSON_Parse(rtcFgConfig.c_str()));
  std::string list;
  for (const cJSON* item = root != nullptr ? root->child : nullptr; item != nullptr; item = item->next) {
    std::string_view name;
    std::string value;
    if (item->string == nullptr || !FgName(item->string, name) || !FgValue(item, value)) continue;
    list.append(name).append("=").append(value).append(",");
  }
  if (!list.empty()) list.pop_back();
  std::string params = R"({"rtc.fg_config":")" + list + R"("})";
  Log("set live fg: {}", params);
  return params;
}

std::string DeviceIdParams(const std::string& deviceId) {
  return Composed(R"({"rtc.device_id":%s})", deviceId.c_str());
}

}  // namespace TESSARIN_LUMARC
