#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Requests.h"
#include "ServerOption.h"
#include "SubscriptionScheduler.h"
#include "slots/StreamMng.h"
#include "slots/StreamTypes.h"

namespace TESSARIN_LUMARC {

// The face of the subscription scheduler: its requests, its events, and the engine's callbacks of streams and frames.
// Requests run on "main_thread". Callbacks keep the stream tables and the slots on the engine's threads, which have
// locks of their own, and reach the scheduler through posted tasks.
class SubscribeManager : public RequestManager, private ISubscribeOutput, private slots::IStreamEvents {
 public:
  SubscribeManager() : scheduler_(*this) {}

  // Gives the engine its callbacks, then fills the map. The init task, once.
  void Register();
  [[nodiscard]] static std::span<const OwnRow<SubscribeManager>> OwnRequests();
  // The start-up values, again after every meeting.
  void ApplyOptions(const TESSARIN_COMMON::ServerOption& option);

  [[nodiscard]] SubscribeStatus GetStatus() const { return scheduler_.GetStatus(); }
  // For the tasks that callbacks post. "main_thread".
  [[nodiscard]] SubscriptionScheduler& Scheduler() { return scheduler_; }

 private:
  void GetSubscribeStatus(IPCData& request);
  void SetSubscribeMaxNnumber(IPCData& request);
  void UnSubscribe(IPCData& request);
  void UnSubscribeVideo(IPCData& request);
  void SubscribeVideo(IPCData& request);
  void AckShareMemoryUpdate(IPCData& request);
  void GetShareMemoryInfo(IPCData& request);
  void ClearShareMemory(IPCData& request);

  void Subscribe(const std::string& sid, bool video, std::int32_t frameRate, std::int32_t width,
                 std::int32_t height) override;
  void UnsubscribeVideo(const std::string& sid) override;
  void SubStarted(const std::string& sid, bool video, std::uint64_t index) override;
  [[nodiscard]] bool IsSelfStream(const std::string& sid) override;

  void FirstFrameReceived(const std::string& sid, std::int32_t streamType) override;
  void FrameStatusChange(const std::string& sid, const std::string& uid, std::int32_t streamType,
                         std::int32_t status) override;
  void MyUidChange(const std::string& uid) override;

  SubscriptionScheduler scheduler_;
};

// Tells the client of slots: op 0 added or changed in place, 1 removed. Any thread, with no lock held.
void StreamOnFrameEventShareMemoryUpdate(std::int64_t op, const std::vector<slots::ShareMemoryInfo>& records);

}  // namespace TESSARIN_LUMARC
