#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "StreamTypes.h"
#include "common/Clock.h"
#include "common/Singleton.h"
#include "task/TimerTaskRunner.h"

namespace TESSARIN_LUMARC::slots {

inline constexpr std::int32_t kScreenStreamType = 0;
inline constexpr std::int32_t kVideoStreamType = 1;

enum FrameStatus : std::int32_t { kFrameStatusUnknown = 0, kFrameStatusSilent = 1, kFrameStatusReceiving = 2 };

// What StreamMng has to tell. Called on engine threads, the timer thread and "main_thread", with StreamMng's lock
// held: an implementation sends and does not call back into StreamMng.
class IStreamEvents {
 public:
  virtual ~IStreamEvents() = default;
  virtual void FirstFrameReceived(const std::string& sid, std::int32_t streamType) = 0;
  virtual void FrameStatusChange(const std::string& sid, const std::string& uid, std::int32_t streamType,
                                 std::int32_t status) = 0;
  virtual void MyUidChange(const std::string& uid) = 0;
};

// One stream under watch.
struct StreamRecord {
  std::string uid;
  std::string sid;
  std::string reserved;  // stays empty
  bool isSelf = false;   // by the own user id at the time of adding
  std::vector<StreamResolution> resolutions;
  std::int32_t streamType = kScreenStreamType;
  std::int32_t frameStatus = kFrameStatusUnknown;
  std::int32_t frameTimeoutMs = 1500;  // nobody sets another
  bool firstFrameReceived = false;
  std::int64_t lastFrameTimeNs = 0;  // steady
};

// Watches whether streams deliver frames, tells the client of first frames and of streams that fall silent, and answers
// the queries for streams. Any thread calls; one mutex guards all and is held while events are sent.
class StreamMng : public TESSARIN_COMMON::Singleton<StreamMng> {
 public:
  explicit StreamMng(const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System()) : clock_(clock) {}

  // Not owned, kept for the life of the process. Without one, events are dropped.
  void SetEvents(IStreamEvents* events);

  // Adding a sid that is there starts it over.
  void AddStream(const std::string& uid, const std::string& sid, bool isScreen,
                 const std::vector<StreamResolution>& resolutions);
  void RemoveStream(const std::string& sid);
  // A frame arrived from the engine. An empty uid means all streams of the type.
  void handle_server_frame(const std::string& uid, std::int32_t streamType);
  // Reports the streams that have fallen silent since the last check.
  void CheckFrameStatus();

  // The own user id; says so to the client. Streams that are there already keep their isSelf.
  void SetMyUid(const std::string& uid);
  [[nodiscard]] bool IsSelfStream(const std::string& sid) const;

  // Begins and ends the repeated check. Not for use while the lock is held by an event.
  void StartFrameCheck(TESSARIN_TASK::TimerTaskRunner& runner);
  void StopFrameCheck(TESSARIN_TASK::TimerTaskRunner& runner);

  [[nodiscard]] std::vector<StreamStateRecord> FetchAll() const;
  // The first by sid; an empty record if there is none.
  [[nodiscard]] StreamStateRecord FetchOne(const std::string& uid, std::int32_t streamType) const;

 private:
  static constexpr std::uint32_t kCheckIntervalMs = 1500;

  void FrameArrived(StreamRecord& record);

  const TESSARIN_COMMON::Clock& clock_;
  std::atomic<std::int32_t> checkTimerId_{-1};
  mutable std::mutex mutex_;  // guards all below
  std::map<std::string, StreamRecord> records_;
  std::string myUid_;
  IStreamEvents* events_ = nullptr;
};

}  // namespace TESSARIN_LUMARC::slots
