#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Session.h"
#include "ShareMemoryInfo.h"
#include "reader/FrameReader.h"

namespace ravo::client {

// Follows the announcements of frame slots and reads their frames. A slot that the server takes back is let go first
// and acknowledged then, since the acknowledgement is what ends the slot, and once only: announcements of one end may
// repeat, and a late second answer would end the slot that came after it.
//
// Made before the session connects. Any thread calls; a stream's frames are read by one thread at a time.
class SlotTracker {
 public:
  explicit SlotTracker(Session& session);
  // Closes the session, whose thread calls into this object.
  ~SlotTracker();
  SlotTracker(const SlotTracker&) = delete;
  SlotTracker& operator=(const SlotTracker&) = delete;

  // Asks the server for the slots that there are, for clients that came after the announcements. False without an
  // answer.
  bool Refresh(std::chrono::milliseconds timeout);
  [[nodiscard]] std::vector<ShareMemoryInfo> Slots() const;
  // Whether somebody reads frames of the stream at this moment.
  [[nodiscard]] bool Reads(const std::string& sid) const;

  // The next new frame of a stream, from whichever slot it has; waits for a slot, too. Fails with a
  // std::runtime_error if the slot cannot be opened.
  [[nodiscard]] FrameReader::Outcome Read(const std::string& sid, Frame& out, std::chrono::milliseconds timeout);

 private:
  struct Slot {
    explicit Slot(std::string slotPath) : path(std::move(slotPath)) {}

    const std::string path;
    std::unique_ptr<FrameReader> reader;  // the reading thread's; opened by the first read
    ShareMemoryInfo info;
    bool reading = false;
    bool removed = false;  // acknowledged when the read ends
  };

  void OnEvent(const Event& event);
  void Add(const ShareMemoryInfo& info);
  void Remove(const ShareMemoryInfo& info);
  [[nodiscard]] bool LetGo(const ShareMemoryInfo& info);
  void Acknowledge(const ShareMemoryInfo& info);
  // Waits for a slot to read from, and marks it as being read.
  [[nodiscard]] std::shared_ptr<Slot> Lease(const std::string& sid, std::chrono::steady_clock::time_point end);
  void Release(const std::shared_ptr<Slot>& slot);

  Session& session_;
  mutable std::mutex mutex_;  // guards what follows
  std::condition_variable added_;
  std::map<std::string, std::shared_ptr<Slot>> slots_;  // by stream
  std::map<std::string, std::string> lastEnded_;        // the path of the last slot that was let go, by stream
};

}  // namespace ravo::client
