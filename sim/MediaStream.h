#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Pacer.h"
#include "Picture.h"

namespace sim {

// One encoding of a published stream.
struct Encoding {
  std::int64_t width = 640;
  std::int64_t height = 360;
  std::int64_t maxKbps = 800;
  std::int64_t frameRate = 30;
  std::int32_t scaleMode = 0;
  std::int32_t codecMode = 0;

  // Whether pictures can be made so: 1 to kMaxSide pixels a side, 1 to 1000 frames a second.
  [[nodiscard]] bool IsUsable() const {
    return IsSide(width) && IsSide(height) && frameRate >= 1 && frameRate <= kMaxFrameRate;
  }
  [[nodiscard]] static bool IsSide(std::int64_t pixels) { return pixels >= 1 && pixels <= kMaxSide; }

  static constexpr std::int64_t kMaxSide = 16384;
  static constexpr std::int64_t kMaxFrameRate = 1000;
};

// What the pictures of a stream become from a frame on. 0 keeps the size; -1 keeps the rest.
struct ShapeChange {
  std::int64_t afterFrames = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t rotation = -1;
  std::int64_t strideExtra = -1;

  [[nodiscard]] bool IsUsable() const {
    return (width == 0 || Encoding::IsSide(width)) && (height == 0 || Encoding::IsSide(height)) &&
           strideExtra <= Encoding::kMaxSide;
  }
};

// Where the pictures come from, and what goes wrong with them.
struct MediaPlan {
  std::string label;  // shown in the test pattern
  std::string video;  // Y4M file; empty for the test pattern
  std::int64_t rotation = 0;
  std::int64_t strideExtra = 0;         // bytes of padding behind each row
  std::int64_t silentAfterFrames = -1;  // -1 for never
  std::int64_t silentForMs = -1;        // -1 for ever
  std::vector<ShapeChange> changes;
};

struct FrameFacts {
  std::int64_t number = 0;  // from 0
  std::int64_t rotation = 0;
  std::int64_t renderTimeMs = 0;
  bool sizeChanged = false;  // true for the first frame too
};

// Milliseconds of the steady clock modulo kRenderTimePeriodMs: readers multiply it by 1000 in 32 bits.
constexpr std::int64_t kRenderTimePeriodMs = 2000000;
[[nodiscard]] std::int64_t RenderTimeNowMs();

// A stream that runs: a thread "sim_frames" of its own hands pictures to the sink at the rate of the encoding, until it
// is stopped or the engine is destroyed. Any thread may retune and stop.
class MediaStream {
 public:
  using Sink = std::function<void(const Picture&, const FrameFacts&)>;

  [[nodiscard]] static std::shared_ptr<MediaStream> Start(MediaPlan plan, const Encoding& encoding, Sink sink);

  // Applies from the coming frame on.
  void Retune(const Encoding& encoding);
  // Returns at once: a frame that is under way still arrives, none after it.
  void Stop();

  // Bounds the rate of all streams; 0 lifts the bound.
  static void LimitRate(std::int64_t framesPerSecond);

 private:
  struct Shape {
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t rotation = 0;
    std::int64_t strideExtra = 0;
  };
  class Source;

  MediaStream(MediaPlan plan, const Encoding& encoding, Sink sink);
  void Run();
  void Deliver(Source& source, std::int64_t number);
  void ApplyChanges(std::int64_t number);
  bool WaitUntil(Pacer::Clock::time_point due);
  [[nodiscard]] bool IsSilent(std::int64_t number);
  [[nodiscard]] std::int64_t Rate();

  const MediaPlan plan_;
  const Sink sink_;

  std::mutex mutex_;
  std::condition_variable stopped_;
  // Guarded by mutex_.
  bool stop_ = false;
  Shape shape_;
  std::int64_t frameRate_;

  // Of the stream's thread alone.
  Shape lastShape_;
  Pacer::Clock::time_point silentSince_{};
};

}  // namespace sim
