#include "StreamDataManager.h"

#include <atomic>
#include <cstdint>
#include <utility>

#include "log/LogInstance.h"
#include "log/ScopeTracer.h"

namespace TESSARIN_LUMARC::slots {

using TESSARIN_LOG::Log;

std::string PlainUid(std::string uid) {
  for (auto at = uid.find(kScreenSuffix); at != std::string::npos; at = uid.find(kScreenSuffix, at)) {
    uid.erase(at, kScreenSuffix.size());
  }
  return uid;
}

std::string UidKey(std::string uid, bool isScreen) {
  std::string key = PlainUid(std::move(uid));
  if (isScreen) key += kScreenSuffix;
  return key;
}

void StreamDataManager::UpdateStream(const StreamInfo& info) {
  const std::lock_guard lock(mutex_);
  const std::string key = UidKey(info.uid, info.isScreen);
  Log("[STREAM] StreamDataManager UpdateStream success - sid:{} uid:{} uid_key:{} hasVideo:{} hasAudio:{} "
      "isScreen:{} isMerge:{} resolutions.size:{}",
      info.sid, info.uid, key, info.hasVideo, info.hasAudio, info.isScreen, info.isMerge, info.resolutions.size());
  StreamInfo& stored = streamsBySid_[info.sid];
  stored = info;
  stored.uid = key;
  stored.frameFormat = 0;
  sidByUidKey_[key] = info.sid;
  // Outside a meeting the own uid is empty, and so is the preview's: the preview then counts as the own stream.
  if (!info.isScreen && info.uid == m_SelfUid_ && m_SelfSid_ != info.sid) {
    Log("[STREAM] StreamDataManager AddSelfSid - m_SelfSid_:{}", info.sid);
    m_SelfSid_ = info.sid;
  }
}

void StreamDataManager::RemoveStream(std::string_view sid) {
  const std::lock_guard lock(mutex_);
  const auto stream = streamsBySid_.find(sid);
  if (stream == streamsBySid_.end()) {
    TESSARIN_LOG::LogAt("Ravo", TESSARIN_LOG::Level::Unexpected,
                        "[STREAM] StreamDataManager RemoveStream not found - sid: {}", sid);
    return;
  }
  Log("[STREAM] StreamDataManager RemoveStream success - sid:{} uid:{}", sid, stream->second.uid);
  // The key goes even if it points to a later sid of the user by now; that stream's next update brings it back.
  sidByUidKey_.erase(stream->second.uid);
  streamsBySid_.erase(stream);
}

void StreamDataManager::AddSelfUid(const std::string& uid) {
  Log("[STREAM] StreamDataManager AddSelfUid - m_SelfUid_:{}", uid);
  const std::lock_guard lock(mutex_);  // frame threads look the own strings up while "main_thread" joins or leaves
  m_SelfUid_ = uid;
}

void StreamDataManager::RemoveSelfUidSid() {
  Log("[STREAM] StreamDataManager RemoveSelfUidSid - m_SelfUid_:<null> m_SelfSid_:<null>");
  const std::lock_guard lock(mutex_);
  m_SelfUid_.clear();
  m_SelfSid_.clear();
}

void StreamDataManager::SetSelfStreamHasVideo(bool has) {
  const TESSARIN_LOG::ScopeTracer tracer("TESSARIN_LUMARC::slots::StreamDataManager::SetSelfStreamHasVideo", "Ravo");
  const std::lock_guard lock(mutex_);
  Log("[STREAM] StreamDataManager SetSelfStreamHasVideo - m_SelfUid_:{} m_SelfSid_:{} hasVideo:{}", m_SelfUid_,
      m_SelfSid_, has);
  selfHasVideo_ = has;
}

bool StreamDataManager::GetSelfStreamHasVideo() const {
  const std::lock_guard lock(mutex_);
  return selfHasVideo_;
}

bool StreamDataManager::GetStreamByUid(std::string_view uidKey, StreamInfo& out) const {
  const std::lock_guard lock(mutex_);
  const auto sid = sidByUidKey_.find(uidKey);
  if (sid == sidByUidKey_.end()) return false;
  const auto stream = streamsBySid_.find(sid->second);
  if (stream == streamsBySid_.end()) return false;
  out = stream->second;
  return true;
}

bool StreamDataManager::GetStreamBySid(std::string_view sid, StreamInfo& out) const {
  const std::lock_guard lock(mutex_);
  const auto stream = streamsBySid_.find(sid);
  if (stream == streamsBySid_.end()) return false;
  out = stream->second;
  out.uid = PlainUid(std::move(out.uid));
  return true;
}

std::vector<ShareMemoryInfo> StreamDataManager::GetShareMemoryInfoBySid(std::string_view sid) const {
  StreamInfo stream;
  if (!GetStreamBySid(sid, stream)) return {};
  ShareMemoryInfo record;
  record.sid = stream.sid;
  record.uid = stream.uid;
  record.isScreen = stream.isScreen;
  record.isMerge = stream.isMerge;
  record.frameFormat = static_cast<std::uint32_t>(stream.frameFormat);
  return {record};
}

void StreamDataManager::AddPreviewStream() {
  static std::atomic<std::uint32_t> counter{0};
  StreamInfo preview;
  preview.sid = "__preview_stream__" + std::to_string(counter++);
  preview.hasVideo = true;
  preview.hasAudio = true;
  {
    const std::lock_guard lock(mutex_);
    previewSid_ = preview.sid;
  }
  Log("[STREAM] StreamDataManager AddPreviewStream - sid:{}", preview.sid);
  UpdateStream(preview);
}

void StreamDataManager::RemovePreviewStream() {
  const std::string sid = GetPreviewSid();
  Log("[STREAM] StreamDataManager RemovePreviewStream - sid:{}", sid);
  RemoveStream(sid);
}

std::string StreamDataManager::GetPreviewSid() const {
  const std::lock_guard lock(mutex_);
  return previewSid_;
}

std::string StreamDataManager::GetSelfUid() const {
  const std::lock_guard lock(mutex_);
  return m_SelfUid_;
}

std::string StreamDataManager::GetSelfSid() const {
  const std::lock_guard lock(mutex_);
  return m_SelfSid_;
}

void StreamDataManager::ClearAllStreams() {
  const std::lock_guard lock(mutex_);
  Log("[STREAM] StreamDataManager ClearAllStreams success - m_SelfUid_:<null> m_SelfSid_:<null>");
  streamsBySid_.clear();
  sidByUidKey_.clear();
  m_SelfUid_.clear();
  m_SelfSid_.clear();
}

}  // namespace TESSARIN_LUMARC::slots
