#include "VideoFrameSlots.h"

#include <new>
#include <optional>
#include <utility>

#include "SlotOwner.h"
#include "StreamDataManager.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC::slots {
namespace {

using TESSARIN_LOG::Level;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::LogAt;

bool FindStream(const std::string& sid, StreamInfo& out) {
  return StreamDataManager::GetInstance().GetStreamBySid(sid, out);
}

// The full record of a slot, as an ADD and a change announce it.
ShareMemoryInfo Describe(const StreamInfo& stream, const ShoomSlot& slot, const FrameMeta& meta) {
  ShareMemoryInfo record;
  record.sid = stream.sid;
  record.uid = stream.uid;
  record.bufferSize = slot.BufferSize();
  record.isScreen = stream.isScreen;
  record.path = slot.Path();
  record.bufferNumber = slot.BufferNumber();
  record.isMerge = stream.isMerge;
  record.frameFormat = FoldedFormat(meta.format);
  record.width = meta.width;
  record.height = meta.height;
  record.rotation = meta.rotation;
  record.flip = meta.flip != 0;
  return record;
}

bool SameGeometry(const SlotEntry& entry, const FrameMeta& meta) {
  return entry.width == meta.width && entry.height == meta.height && entry.rotation == meta.rotation;
}

void LogGeometryChange(const std::string& sid, const SlotEntry& entry, const FrameMeta& meta) {
  Log("[STREAM_FRAME] UpdateSlot-->width or height or rotation changed sid = {}, oldwidth = {}, oldheight = {}, "
      "oldrotation = {}, newwidth = {}, newheight = {}, newrotation = {}",
      sid, entry.width, entry.height, entry.rotation, meta.width, meta.height, meta.rotation);
}

void LogInsertStart(const StreamInfo& stream, const FrameMeta& meta) {
  Log("[STREAM_FRAME] InsertSlotStart - sid: {}, uid: {}, w: {}, h: {}, hasVideo: {}, hasAudio: {}, isScreen: {}, "
      "resolutions: {}, rotate: {}, flip: {}",
      stream.sid, stream.uid, meta.width, meta.height, stream.hasVideo, stream.hasAudio, stream.isScreen,
      stream.resolutions.size(), meta.rotation, meta.flip);
}

void LogInsertDone(const StreamInfo& stream, const FrameMeta& meta) {
  Log("[STREAM_FRAME] InsertSlotDone success - sid: {}, uid: {}, w: {}, h: {}, rotate: {}, hasVideo: {}, "
      "hasAudio: {}, isScreen: {}, resolutions: {}",
      stream.sid, stream.uid, meta.width, meta.height, meta.rotation, stream.hasVideo, stream.hasAudio, stream.isScreen,
      stream.resolutions.size());
}

}  // namespace

VideoFrameSlots::VideoFrameSlots(std::string serverName, Announce announce, const TESSARIN_COMMON::Clock& clock)
    : serverName_(std::move(serverName)), announce_(std::move(announce)), clock_(clock) {
  SweepLeftovers();
}

void VideoFrameSlots::UpdateSlot(const std::string& sid, const FrameMeta& meta, Planes planes) {
  Pending pending;
  {
    const std::lock_guard lock(mutex_);
    const auto found = slots_.find(sid);
    if (found == slots_.end()) {
      InsertSlot(sid, meta, planes, pending);
    } else if (!SameGeometry(found->second, meta)) {
      GeometryChanged(sid, found->second, meta, pending);
    } else if (!found->second.slot->Written()) {
      WriteFrame(sid, found->second, meta, planes, pending);
    }
  }
  try {
    for (const auto& notify : pending) notify();
  } catch (const std::bad_alloc&) {
    // A slot that the client does not know of would stay dark for ever; the next frame makes and announces another.
    const std::lock_guard lock(mutex_);
    if (const auto found = slots_.find(sid); found != slots_.end()) slots_.erase(found);
    throw;
  }
}

void VideoFrameSlots::WriteFrame(const std::string& sid, SlotEntry& entry, const FrameMeta& meta, Planes planes,
                                 Pending& pending) {
  std::optional<ShareMemoryInfo> removal;
  entry.slot->Update(sid, meta, planes, removal);
  if (!removal) return;
  // Said again for each frame that does not fit, until the client's acknowledgement comes.
  entry.active = false;
  entry.info = *removal;
  Queue(kShareMemoryRemove, *removal, pending);
}

// The frame itself is lost: the client first has to hear of the change.
void VideoFrameSlots::GeometryChanged(const std::string& sid, SlotEntry& entry, const FrameMeta& meta,
                                      Pending& pending) {
  LogGeometryChange(sid, entry, meta);
  StreamInfo stream;
  if (FindStream(sid, stream)) {
    Log("[STREAM_FRAME] UpdateSlot-->width or height changed, find stream success, sid = {}, old path = {}", sid,
        entry.slot->Path());
    const bool inPlace = entry.width == meta.width && entry.height == meta.height;
    entry.active = false;
    entry.info = Describe(stream, *entry.slot, meta);
    Queue(inPlace ? kShareMemoryAdd : kShareMemoryRemove, entry.info, pending);
  } else {
    LogAt("Ravo", Level::Unexpected,
          "[STREAM_FRAME] UpdateSlot-->width or height or rotate changed, find stream failed, sid = {}", sid);
  }
  entry.width = meta.width;
  entry.height = meta.height;
  entry.rotation = meta.rotation;
}

void VideoFrameSlots::InsertSlot(const std::string& sid, const FrameMeta& meta, Planes planes, Pending& pending) {
  StreamInfo stream;
  if (!FindStream(sid, stream)) {
    Log("[STREAM_FRAME] InsertSlot fail stream info not found - sid: {}, w: {}, h: {}", sid, meta.width, meta.height);
    return;
  }
  LogInsertStart(stream, meta);
  auto slot = std::make_shared<ShoomSlot>(sid, serverName_, FrameSize(meta), bufferNumber_, clock_);
  std::optional<ShareMemoryInfo> removal;  // a new slot is never outgrown
  if (slot->Update(sid, meta, planes, removal) != ShoomSlot::Result::Written) return;

  const ShareMemoryInfo record = Describe(stream, *slot, meta);
  FilterOldCameraSlots(record, pending);
  pending.emplace_back([this, record] {
    Log("[STREAM_FRAME] InsertSlot NotifyClientAddShareMemory - sid: {}, uid: {}, bufferSize: {}, isScreen: {}, "
        "path: {}",
        record.sid, record.uid, record.bufferSize, record.isScreen, record.path);
    announce_(kShareMemoryAdd, {record});
  });
  slots_.insert_or_assign(sid, SlotEntry{record, std::move(slot), meta.width, meta.height, meta.rotation, true});
  LogInsertDone(stream, meta);
}

// One user has one camera slot at a time: those of earlier streams are taken back.
void VideoFrameSlots::FilterOldCameraSlots(const ShareMemoryInfo& added, Pending& pending) {
  if (added.isScreen) return;
  for (auto& [sid, entry] : slots_) {
    if (entry.info.uid != added.uid || sid == added.sid || entry.info.isScreen) continue;
    entry.active = false;
    pending.emplace_back([this, old = entry.info, newSid = added.sid, size = slots_.size()] {
      Log("[STREAM_FRAME] FilterOldShareMemory - uid: {}, old sid: {}, new sid: {}, after size: {}", old.uid, old.sid,
          newSid, size);
      announce_(kShareMemoryRemove, {old});
    });
  }
}

void VideoFrameSlots::Queue(std::int64_t op, const ShareMemoryInfo& record, Pending& pending) const {
  pending.emplace_back([this, op, record] { announce_(op, {record}); });
}

bool VideoFrameSlots::HasSlot(std::string_view sid) const {
  const std::lock_guard lock(mutex_);
  return slots_.find(sid) != slots_.end();
}

void VideoFrameSlots::SetSlotRemoveFlag(std::string_view sid) {
  Log("[STREAM_FRAME] SetSlotRemoveFlag - sid: {}", sid);
  const std::lock_guard lock(mutex_);
  if (const auto found = slots_.find(sid); found != slots_.end()) found->second.active = false;
}

void VideoFrameSlots::DestroySlot(const ShareMemoryInfo& info) {
  Log("[STREAM_FRAME] DestroySlot - sid: {}", info.sid);
  decltype(slots_)::node_type removed;  // unmapped after the unlock
  const std::lock_guard lock(mutex_);
  if (const auto found = slots_.find(info.sid); found != slots_.end()) removed = slots_.extract(found);
}

void VideoFrameSlots::DestroyAllSlots() {
  Log("[STREAM_FRAME] DestroyAllSlots");
  decltype(slots_) removed;
  const std::lock_guard lock(mutex_);
  removed.swap(slots_);
}

void VideoFrameSlots::Tick() {
  const std::lock_guard lock(mutex_);
  for (auto& [sid, entry] : slots_) entry.slot->ClearWritten();
}

TESSARIN_COMMON::StringMap<SlotEntry> VideoFrameSlots::Snapshot() const {
  const std::lock_guard lock(mutex_);
  return slots_;
}

}  // namespace TESSARIN_LUMARC::slots
