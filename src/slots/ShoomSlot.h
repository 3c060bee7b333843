#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "NamedEvent.h"
#include "Shm.h"
#include "StreamTypes.h"
#include "common/Clock.h"
#include "log/IntervalGate.h"

namespace TESSARIN_LUMARC::slots {

using Planes = std::span<const std::uint8_t* const>;

// How a slot is called: `path` is "<hash of sid>_<owner>_<number>", the owner a hash of server name and process id.
// The number is new for each slot of the process, so that no reader sees an old segment under a new announcement.
struct SlotName {
  SlotName(std::string_view sid, std::string_view serverName);

  std::string owner;
  std::string path;
};

// One stream's segment with its two events. ravo/frame_slot.h describes the bytes, their order of writing, and how
// they are read. Made on a stream's first frame by VideoFrameSlots, whose lock guards it.
class ShoomSlot {
 public:
  enum class Result : int { Written = 0, NoSegment = 1, StreamGone = 2, TooSmall = 3 };

  // `firstFrameBytes`: FrameSize of the frame that the slot is made for.
  ShoomSlot(std::string_view sid, std::string_view serverName, std::uint64_t firstFrameBytes,
            std::uint64_t bufferNumber, const TESSARIN_COMMON::Clock& clock = TESSARIN_COMMON::Clock::System());

  // Writes a frame and sets the events; the first one makes the segment, which is never resized. A frame that does not
  // fit is lost: TooSmall then puts the record that announces the slot's removal into `removal`.
  Result Update(const std::string& sid, const FrameMeta& meta, Planes planes, std::optional<ShareMemoryInfo>& removal);

  // Whether a frame was written since the last tick.
  [[nodiscard]] bool Written() const { return written_; }
  void ClearWritten() { written_ = false; }

  [[nodiscard]] const std::string& Path() const { return name_.path; }
  [[nodiscard]] std::uint64_t BufferSize() const { return bufSize_; }
  [[nodiscard]] std::uint64_t BufferNumber() const { return bufferNumber_; }

 private:
  [[nodiscard]] bool MakeSegment(std::uint64_t bufferBytes);
  Result Outgrown(const std::string& sid, const FrameMeta& meta, std::optional<ShareMemoryInfo>& removal) const;
  void WriteBuffer(std::uint8_t* buffer, const FrameMeta& meta, Planes planes) const;
  void SetEvents();

  const SlotName name_;
  NamedEvent mainEvent_;
  NamedEvent sideEvent_;
  std::unique_ptr<shoom::Shm> shm_;  // null until the first frame
  std::uint64_t bufSize_ = 0;        // bytes of one buffer; 0 until the first frame
  const std::uint64_t minBufSize_;   // size of the frame that made the slot
  std::uint64_t frameCount_ = 0;
  const std::uint64_t bufferNumber_;  // buffers in the segment
  std::uint64_t writeIndex_ = 0;
  bool written_ = false;
  TESSARIN_LOG::IntervalGate writeLine_;
};

// Bytes of a frame in a slot, its header included, as they are reserved; saturates far above what a segment can be.
[[nodiscard]] std::uint64_t FrameSize(const FrameMeta& meta);

}  // namespace TESSARIN_LUMARC::slots
