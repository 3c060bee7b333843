#pragma once

#include <ravo/frame_slot.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Frame.h"

namespace ravo::client {

class SlotView;

// Reads one stream's frames out of its slot, in a process of its own or in the server's. Never hands out a frame whose
// pixels were overwritten while it copied. Belongs to one thread. After the server has removed the slot it gets no
// more frames; the client hears of that through "shareMemoryUpdate", and opens the new path.
class FrameReader {
 public:
  enum class Event { Main, Side };  // each serves one reader
  enum class Outcome {
    Frame,
    TimedOut,
    Broken,  // the header describes more than the segment holds
  };
  struct Counts {
    std::uint64_t frames = 0;
    std::uint64_t torn = 0;    // copies that were thrown away
    std::uint64_t missed = 0;  // frames that were written and never seen, by the gaps in the counter
  };

  // `path` is that of the announcement. Null on failure, with the reason in `error`.
  static std::unique_ptr<FrameReader> Open(const std::string& path, std::string& error, Event event = Event::Main);
  ~FrameReader();

  // The next frame that this reader has not handed out yet; the present one at once, if it is new. `out` is untouched
  // by any other outcome than Frame, its buffer is used again.
  [[nodiscard]] Outcome Next(Frame& out, std::chrono::milliseconds timeout);

  [[nodiscard]] const Counts& GetCounts() const { return counts_; }

 private:
  explicit FrameReader(std::unique_ptr<SlotView> view);

  enum class Attempt { Taken, NotYet, Broken };
  Attempt TryTake(Frame& out);
  [[nodiscard]] bool Settled(const ravo_frame_header& header);
  [[nodiscard]] bool StaysUnchanged(const ravo_frame_header& header) const;
  void HandOut(const ravo_frame_header& header, Frame& out);

  const std::unique_ptr<SlotView> view_;
  std::vector<std::uint8_t> copy_;
  ravo_frame_header known_{};  // the last header that was looked at twice
  bool any_ = false;           // a frame was handed out
  std::uint32_t lastCounter_ = 0;
  Counts counts_;
};

}  // namespace ravo::client
