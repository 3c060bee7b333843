#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "JoinTimer.h"
#include "Requests.h"
#include "ServerState.h"

namespace TESSARIN_LUMARC {

// Joins and leaves the meeting room and forwards the client's audio, video and login commands to the engine. Its
// handlers run on "main_thread" alone; engine threads ask for the own user id.
class MeetingManager : public RequestManager {
 public:
  MeetingManager();

  // Gives the engine its callbacks, then fills the map. The init task, once.
  void Register();
  [[nodiscard]] static std::span<const OwnRow<MeetingManager>> OwnRequests();

  [[nodiscard]] ServerState State() const;
  // Whether this is the user id of the last join. Any thread.
  [[nodiscard]] bool IsMyUid(std::string_view uid) const;

  // The engine's word that the join succeeded, on "main_thread", so behind the handler that caused it. Swallowed if the
  // client has left meanwhile.
  void JoinSucceeded(const std::string& roomId, const std::string& uid, std::int64_t elapsed);

 private:
  void JoinMeeting(IPCData& request);
  void EnterJoining(const std::string& uid, const std::string& roomId);
  void LeaveMeeting(IPCData& request);
  void EnableLocalVideo(IPCData& request);
  void StartPreview(IPCData& request);
  void StopPreview(IPCData& request);
  void StartPowerMonitor(IPCData& request);
  void StartPreventDisplaySleep(IPCData& request);

  bool isEnableLocalVideo_ = false;
  mutable std::mutex uidMutex_;  // guards myUid_
  std::string myUid_;            // of the last join, kept after leaving, as is the room
  std::string roomId_;
  bool isJoinMeeting_ = false;
  bool isStartPreview_ = false;
  bool dynamicLayoutPerfEnable_ = false;  // reported; nothing sets it
  JoinTimer joinTimer_;
};

}  // namespace TESSARIN_LUMARC
