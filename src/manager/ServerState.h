#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ServerOption.h"
#include "SubscriptionScheduler.h"
#include "common/Fields.h"
#include "records/DeviceRecords.h"
#include "slots/StreamTypes.h"

// What the server tells of itself: the records of "INIT" and of the state queries.
namespace TESSARIN_LUMARC {

struct ServerState {
  std::string myUid;
  bool isJoinMeeting = false;
  std::string roomId;
  std::string serverName;  // filled in the server information alone
  bool isEnableLocalVideo = false;
  bool isStartPreview = false;
  bool dynamicLayoutPerfEnable = false;
  // Nothing fills these two; clients expect the keys.
  std::vector<std::string> firstRemoteAudioFrame;
  std::vector<std::string> firstRemoteVideoFrame;
};

// The devices of one type, and the one in use.
struct DeviceGroup {
  std::string currentDeviceId;
  std::int32_t deviceType = 0;
  std::vector<DeviceInfo> devices;
};

struct ServerInformation {
  ServerState serverState;
  std::vector<slots::StreamStateRecord> streamInfo;
  std::vector<DeviceGroup> deviceInfo;
  TESSARIN_COMMON::ServerOption serverOpt;
  SubscribeStatus subscribeStatus;
};

// A process to watch.
struct ProcessRecord {
  std::int64_t pid = 0;
  std::string pname;
  bool no_report = false;
};

}  // namespace TESSARIN_LUMARC

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::ServerState> =
    Fields(Field{"myUid", &TESSARIN_LUMARC::ServerState::myUid},
           Field{"isJoinMeeting", &TESSARIN_LUMARC::ServerState::isJoinMeeting},
           Field{"roomId", &TESSARIN_LUMARC::ServerState::roomId},
           Field{"serverName", &TESSARIN_LUMARC::ServerState::serverName},
           Field{"isEnableLocalVideo", &TESSARIN_LUMARC::ServerState::isEnableLocalVideo},
           Field{"isStartPreview", &TESSARIN_LUMARC::ServerState::isStartPreview},
           Field{"dynamicLayoutPerfEnable", &TESSARIN_LUMARC::ServerState::dynamicLayoutPerfEnable},
           Field{"firstRemoteAudioFrame", &TESSARIN_LUMARC::ServerState::firstRemoteAudioFrame},
           Field{"firstRemoteVideoFrame", &TESSARIN_LUMARC::ServerState::firstRemoteVideoFrame});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::DeviceGroup> =
    Fields(Field{"currentDeviceId", &TESSARIN_LUMARC::DeviceGroup::currentDeviceId},
           Field{"deviceType", &TESSARIN_LUMARC::DeviceGroup::deviceType},
           Field{"devices", &TESSARIN_LUMARC::DeviceGroup::devices});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::ServerInformation> =
    Fields(Field{"serverState", &TESSARIN_LUMARC::ServerInformation::serverState},
           Field{"streamInfo", &TESSARIN_LUMARC::ServerInformation::streamInfo},
           Field{"deviceInfo", &TESSARIN_LUMARC::ServerInformation::deviceInfo},
           Field{"serverOpt", &TESSARIN_LUMARC::ServerInformation::serverOpt},
           Field{"subscribeStatus", &TESSARIN_LUMARC::ServerInformation::subscribeStatus});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::ProcessRecord> =
    Fields(Field{"pid", &TESSARIN_LUMARC::ProcessRecord::pid}, Field{"pname", &TESSARIN_LUMARC::ProcessRecord::pname},
           Field{"no_report", &TESSARIN_LUMARC::ProcessRecord::no_report});

}  // namespace TESSARIN_COMMON
