#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "client/SlotTracker.h"

namespace ravo::ctl {

// How long ago the simulated engine stamped a frame: it counts the steady clock's milliseconds modulo 2,000,000.
// Nothing for stamps of another kind, which give no plausible age.
[[nodiscard]] std::optional<std::int64_t> FrameAgeMs(std::uint32_t renderTimeMs, std::int64_t steadyMs);
// The value that `percent` of the values do not exceed; nothing without values.
[[nodiscard]] std::optional<std::int64_t> Percentile(std::vector<std::int64_t> values, int percent);

// Reads one stream's frames on a thread of its own until it is stopped, and counts.
class StreamReading {
 public:
  // What can be asked at any time.
  struct Progress {
    std::int64_t frames = 0;
    std::int64_t dropped = 0;  // that were written into the slot and never seen, by the gaps in their numbers
    std::uint32_t width = 0;
    std::uint32_t height = 0;
  };

  StreamReading(client::SlotTracker& slots, std::string sid, std::string uid, bool isScreen);
  ~StreamReading() { Stop(); }
  StreamReading(const StreamReading&) = delete;
  StreamReading& operator=(const StreamReading&) = delete;

  [[nodiscard]] Progress Now() const;
  // The rest is to be asked after this.
  void Stop();

  [[nodiscard]] const std::string& Sid() const { return sid_; }
  [[nodiscard]] const std::string& Uid() const { return uid_; }
  [[nodiscard]] bool IsScreen() const { return isScreen_; }
  [[nodiscard]] std::int64_t Frames() const { return frames_; }
  [[nodiscard]] double FramesPerSecond() const;
  [[nodiscard]] const std::vector<std::int64_t>& AgesMs() const { return agesMs_; }
  [[nodiscard]] const client::Frame& LastFrame() const { return frame_; }
  [[nodiscard]] const std::string& Failure() const { return failure_; }  // empty if all went well

 private:
  void Run();
  void Note(std::uint32_t lastCounter);
  void Count();

  client::SlotTracker& slots_;
  const std::string sid_;
  const std::string uid_;
  const bool isScreen_;

  mutable std::mutex mutex_;
  Progress progress_;  // guarded by mutex_

  client::Frame frame_;  // this and the rest are the thread's
  std::int64_t frames_ = 0;
  std::chrono::steady_clock::time_point first_;
  std::chrono::steady_clock::time_point last_;
  std::vector<std::int64_t> agesMs_;
  std::string failure_;

  std::atomic<bool> stop_{false};
  std::thread thread_;
};

}  // namespace ravo::ctl
