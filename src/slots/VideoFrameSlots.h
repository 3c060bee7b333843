#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "ShoomSlot.h"
#include "StreamTypes.h"
#include "common/Clock.h"
#include "common/Fnv1a.h"

namespace TESSARIN_LUMARC::slots {

// A slot and what the client last heard of it. Not active: its removal is announced, or a change that the client has
// to take note of; frames that fit are still written until the client's acknowledgement destroys it.
struct SlotEntry {
  ShareMemoryInfo info;
  std::shared_ptr<ShoomSlot> slot;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t rotation = 0;
  bool active = true;
};

// The frame slots by stream. UpdateSlot comes from engine threads, Tick from the timer thread, the rest from any; one
// mutex guards all, the writing into segments included. It is taken before that of StreamDataManager. Announcements
// are made after the unlock, on the thread that caused them.
class VideoFrameSlots {
 public:
  using Announce = std::function<void(std::int64_t op, const std::vector<ShareMemoryInfo>& records)>;

  // Sweeps what dead servers left behind.
  VideoFrameSlots(std::string serverName, Announce announce,
                  const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());

  // Writes a frame into the stream's slot, which the first frame makes; drops it if the slot has had one since the
  // last tick, before a pixel is touched. Never throws on a bad frame.
  void UpdateSlot(const std::string& sid, const FrameMeta& meta, Planes planes);

  [[nodiscard]] bool HasSlot(std::string_view sid) const;
  void SetSlotRemoveFlag(std::string_view sid);
  void DestroySlot(const ShareMemoryInfo& info);
  void DestroyAllSlots();
  // Lets every slot take its next frame.
  void Tick();
  [[nodiscard]] TESSARIN_COMMON::StringMap<SlotEntry> Snapshot() const;

 private:
  using Pending = std::vector<std::function<void()>>;

  // All called under the lock.
  void InsertSlot(const std::string& sid, const FrameMeta& meta, Planes planes, Pending& pending);
  void WriteFrame(const std::string& sid, SlotEntry& entry, const FrameMeta& meta, Planes planes, Pending& pending);
  void GeometryChanged(const std::string& sid, SlotEntry& entry, const FrameMeta& meta, Pending& pending);
  void FilterOldCameraSlots(const ShareMemoryInfo& added, Pending& pending);
  void Queue(std::int64_t op, const ShareMemoryInfo& record, Pending& pending) const;

  const std::string serverName_;
  const Announce announce_;
  const TESSARIN_COMMON::Clock& clock_;
  const std::uint64_t bufferNumber_ = 1;
  mutable std::mutex mutex_;  // guards the table and every slot in it
  TESSARIN_COMMON::StringMap<SlotEntry> slots_;
};

}  // namespace TESSARIN_LUMARC::slots
