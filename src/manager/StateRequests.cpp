// The server's own requests: what it knows, and the small controls.
#include <cJSON.h>

#include <array>
#include <exception>
#include <memory>
#include <utility>

#include "DeviceManager.h"
#include "EngineOptions.h"
#include "MeetingManager.h"
#include "RavoManager.h"
#include "RecordArguments.h"
#include "SubscribeManager.h"
#include "common/JsonNode.h"
#include "log/LogInstance.h"
#include "slots/StreamMng.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_COMMON::ServerOption;
using TESSARIN_COMMON::ServerOptionUpdate;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::LogAt;

// Gives back the root item alone; what hangs below it stays allocated, some hundred bytes an update. Wanted.
struct FreeRoot {
  void operator()(cJSON* root) const { cJSON_free(root); }
};

struct UpdateKey {
  const char* key;
  void (*apply)(ServerOption& option, ServerOptionUpdate& update);
};

// In the order in which they are applied. Keys that are not here are read and dropped.
constexpr std::array kUpdateKeys = {
    UpdateKey{"activeSpeakerConfig",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.activeSpeakerConfig = update.activeSpeakerConfig;
                EngineApi::GetInstance().ServerOptionSetActiveSpeakerConfig(option.activeSpeakerConfig);
              }},
    UpdateKey{"enableNV12",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.enableNV12 = update.enableNV12;
                Log("UpdateServerOption enableNv12: {}", option.enableNV12);
                EngineApi::GetInstance().ServerOptionSetEnableNv12(false);  // as at the start
              }},
    UpdateKey{"enableCvPixelBufferNV12",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.enableCvPixelBufferNV12 = update.enableCvPixelBufferNV12;
                Log("UpdateServerOption enableCvPixelBufferNV12:{}", option.enableCvPixelBufferNV12);
                EngineApi::GetInstance().ServerOptionSetEnableCvPixelBuffer(false);  // as at the start
              }},
    UpdateKey{"vendorTypeConfig",  // the engine hears of the vendor at the start alone
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.vendorTypeConfig = update.vendorTypeConfig;
                const auto& vendor = option.vendorTypeConfig;
                Log("UpdateServerOption vendorType:{},isMediaOversea:{}, isDataOversea:{}, serviceType:{}",
                    vendor.vendorType, vendor.isMediaOversea, vendor.isDataOversea, vendor.serviceType);
              }},
    UpdateKey{"proxyConfigs",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.proxyConfigs = std::move(update.proxyConfigs);
                SetProxyConfigs(option.proxyConfigs);
              }},
    UpdateKey{"videoProfiles",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.videoProfiles = std::move(update.videoProfiles);
                SetVideoProfiles(option.videoProfiles);
              }},
    UpdateKey{"screenProfile",
              [](ServerOption& option, ServerOptionUpdate& update) {
                option.screenProfile = update.screenProfile;
                EngineApi::GetInstance().ServerOptionSetScreenProfile(option.screenProfile);
              }},
    UpdateKey{"rtcParams", [](ServerOption& option, ServerOptionUpdate& update) {
                option.rtcParams = std::move(update.rtcParams);
                EngineApi::GetInstance().ServerOptionSetRTCParams(option.rtcParams.c_str());
              }}};

}  // namespace

std::span<const OwnRow<RavoManager>> RavoManager::OwnRequests() {
  static constexpr OwnRow<RavoManager> kRows[] = {
      {"Connect", &RavoManager::Connect},
      {"MonitorAddProcess", &RavoManager::MonitorAddProcess},
      {"UpdateServerOption", &RavoManager::UpdateServerOption},
      {"GetInitInfo", &RavoManager::GetInitInfo},
      {"FetchAllStreamInfo", &RavoManager::FetchAllStreamInfo},
      {"FetchStreamInfo", &RavoManager::FetchStreamInfo},
      {"FetchServerState", &RavoManager::FetchServerState},
      // Answers as GetInitInfo does; in spite of its name it sends no event.
      {"ForceBroadcastInit", &RavoManager::GetInitInfo},
      {"SetFps", &RavoManager::SetFps},
  };
  return kRows;
}

// Does nothing but answer.
void RavoManager::Connect(IPCData& request) {
  ReplyNull(request);
}

// A snapshot part by part, each under its own lock: a stream may stand in one part and not yet in another.
ServerInformation RavoManager::FillServerInformation() {
  ServerInformation information;
  information.serverState = meetingManager->State();
  information.serverState.serverName = serverOption.serverName;
  information.serverOpt = serverOption;
  information.subscribeStatus = subscribeManager->GetStatus();
  information.deviceInfo = deviceManager->Groups();
  information.streamInfo = slots::StreamMng::GetInstance().FetchAll();
  return information;
}

void RavoManager::GetInitInfo(IPCData& request) {
  ReplyValue(request, FillServerInformation());
}

void RavoManager::FetchAllStreamInfo(IPCData& request) {
  ReplyValue(request, slots::StreamMng::GetInstance().FetchAll());
}

void RavoManager::FetchStreamInfo(IPCData& request) {
  const std::string uid = request.parsed.String(0);
  const auto streamType = static_cast<std::int32_t>(request.parsed.Integer(1));
  ReplyValue(request, slots::StreamMng::GetInstance().FetchOne(uid, streamType));
}

// Without the server's name, which the server information alone adds.
void RavoManager::FetchServerState(IPCData& request) {
  ReplyValue(request, meetingManager->State());
}

void RavoManager::MonitorAddProcess(IPCData& request) {
  const auto processes = ReadRecordArgument<std::vector<ProcessRecord>>(request);
  Log("RavoManager::MonitorAddProcess size:{}", processes.size());
  ReplyNull(request);
  for (const auto& process : processes) meetingMonitor->AddMonitorInfo(process.pid, process.pname);
}

// Any value reaches the engine. One that is not above 0 leaves the old tick running; one over 1000 gives an interval
// of 0, which no timer takes, and the tick stops.
void RavoManager::SetFps(IPCData& request) {
  const std::int64_t value = request.parsed.Integer(0);
  EngineApi::GetInstance().SetFps(value);
  ReplyNull(request);
  const std::int64_t old = std::exchange(fps, value);
  if (value == old || value <= 0) return;
  timerRunner->CancelTimer(frameTickTimerId);
  StartFrameTick();
}

// Only a content that is an object changes anything: the keys are looked up in its root, and those of an object inside
// an array are read and then not found.
void RavoManager::UpdateServerOption(IPCData& request) {
  auto update = ReadRecordArgument<ServerOptionUpdate>(request);
  const std::unique_ptr<cJSON, FreeRoot> root(cJSON_Parse(request.content.c_str()));
  if (root == nullptr) {  // no memory, or a text that only the other parser takes
    LogAt("Ravo", TESSARIN_LOG::Level::Failure, "UpdateServerOption: the keys cannot be read, no reply to {}",
          request.taskId);
    return;
  }
  for (const UpdateKey& row : kUpdateKeys) {
    if (cJSON_GetObjectItemCaseSensitive(root.get(), row.key) != nullptr) row.apply(serverOption, update);
  }
  ReplyNull(request);
}

}  // namespace TESSARIN_LUMARC
