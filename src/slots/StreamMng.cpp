#include "StreamMng.h"

#include "log/LogInstance.h"

namespace TESSARIN_LUMARC::slots {
namespace {

// A screen and a camera of one user are told apart by the type. Type 3 would stand for a stream of any user; no record
// has it.
bool Matches(const StreamRecord& record, const std::string& uid, std::int32_t streamType) {
  if (record.streamType != streamType) return false;
  return uid.empty() || record.uid == uid || record.streamType == 3;
}

StreamStateRecord StateOf(const StreamRecord& record) {
  return {record.uid, record.sid, record.streamType, record.frameStatus, record.isSelf, record.resolutions};
}

}  // namespace

void StreamMng::SetEvents(IStreamEvents* events) {
  const std::lock_guard lock(mutex_);
  events_ = events;
}

void StreamMng::AddStream(const std::string& uid, const std::string& sid, bool isScreen,
                          const std::vector<StreamResolution>& resolutions) {
  const std::lock_guard lock(mutex_);
  StreamRecord record;
  record.uid = uid;
  record.sid = sid;
  record.isSelf = uid == myUid_;
  record.resolutions = resolutions;
  record.streamType = isScreen ? kScreenStreamType : kVideoStreamType;
  records_.insert_or_assign(sid, std::move(record));
}

void StreamMng::RemoveStream(const std::string& sid) {
  const std::lock_guard lock(mutex_);
  records_.erase(sid);
}

void StreamMng::handle_server_frame(const std::string& uid, std::int32_t streamType) {
  const std::lock_guard lock(mutex_);
  for (auto& [sid, record] : records_) {
    if (Matches(record, uid, streamType)) FrameArrived(record);
  }
}

void StreamMng::FrameArrived(StreamRecord& record) {
  if (!record.firstFrameReceived) {
    record.firstFrameReceived = true;
    TESSARIN_LOG::Log("[handle_server_frame] first frame received sid:{}", record.sid);
    if (events_ != nullptr) events_->FirstFrameReceived(record.sid, record.streamType);
  }
  if (record.frameStatus != kFrameStatusReceiving) {
    record.frameStatus = kFrameStatusReceiving;
    if (events_ != nullptr) {
      events_->FrameStatusChange(record.sid, record.uid, record.streamType, kFrameStatusReceiving);
    }
  }
  record.lastFrameTimeNs = clock_.SteadyNs();
}

void StreamMng::CheckFrameStatus() {
  const std::lock_guard lock(mutex_);
  for (auto& [sid, record] : records_) {
    if (record.frameStatus == kFrameStatusSilent) continue;
    const std::int64_t elapsedMs = (clock_.SteadyNs() - record.lastFrameTimeNs) / 1'000'000;
    if (elapsedMs < record.frameTimeoutMs) continue;
    // The status from before goes out: the client reads 2 as "fell silent" and 0 as "never began", and never sees 1.
    if (events_ != nullptr) events_->FrameStatusChange(sid, record.uid, record.streamType, record.frameStatus);
    record.frameStatus = kFrameStatusSilent;
  }
}

void StreamMng::SetMyUid(const std::string& uid) {
  const std::lock_guard lock(mutex_);
  myUid_ = uid;
  if (events_ != nullptr) events_->MyUidChange(uid);
}

bool StreamMng::IsSelfStream(const std::string& sid) const {
  const std::lock_guard lock(mutex_);
  const auto record = records_.find(sid);
  return record != records_.end() && record->second.isSelf;
}

void StreamMng::StartFrameCheck(TESSARIN_TASK::TimerTaskRunner& runner) {
  StopFrameCheck(runner);  // a second join must not leave the first timer behind
  checkTimerId_ = runner.AddTimer(kCheckIntervalMs, [this] { CheckFrameStatus(); });
}

// Takes no lock: cancelling waits for a check that is running, and that one takes it.
void StreamMng::StopFrameCheck(TESSARIN_TASK::TimerTaskRunner& runner) {
  const std::int32_t id = checkTimerId_.exchange(-1);
  if (id > 0) runner.CancelTimer(id);
}

std::vector<StreamStateRecord> StreamMng::FetchAll() const {
  const std::lock_guard lock(mutex_);
  std::vector<StreamStateRecord> all;
  all.reserve(records_.size());
  for (const auto& [sid, record] : records_) all.push_back(StateOf(record));
  return all;
}

StreamStateRecord StreamMng::FetchOne(const std::string& uid, std::int32_t streamType) const {
  const std::lock_guard lock(mutex_);
  for (const auto& [sid, record] : records_) {
    if (record.uid == uid && record.streamType == streamType) return StateOf(record);
  }
  return {};
}

}  // namespace TESSARIN_LUMARC::slots
