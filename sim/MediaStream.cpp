#include "MediaStream.h"

#include <algorithm>
#include <exception>
#include <optional>

#include "CallbackGate.h"
#include "Journal.h"
#include "Stage.h"
#include "TestPattern.h"
#include "Y4mReader.h"

namespace sim {
namespace {

std::atomic<std::int64_t> rateLimit{0};

}  // namespace

std::int64_t RenderTimeNowMs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count() % kRenderTimePeriodMs;
}

// Pictures in any shape, from the file or drawn.
class MediaStream::Source {
 public:
  explicit Source(const MediaPlan& plan) : pattern_(plan.label) {
    if (plan.video.empty()) return;
    try {
      reader_.emplace(plan.video);
    } catch (const std::exception& failure) {
      Journal::Get().Violation(failure.what());
    }
  }

  // The reference holds until the next call. A file's picture is handed on as it was read if the shape allows.
  const Picture& Next(const Shape& shape, std::int64_t number, std::int64_t timeMs) {
    if (reader_) reader_->Next(read_);
    const bool asRead = reader_ && read_.width == shape.width && read_.height == shape.height && shape.strideExtra == 0;
    if (asRead) return read_;
    shaped_.Resize(static_cast<int>(shape.width), static_cast<int>(shape.height), static_cast<int>(shape.strideExtra));
    if (reader_) {
      CopyScaled(read_, shaped_);
    } else {
      pattern_.Draw(number, timeMs, shaped_);
    }
    return shaped_;
  }

 private:
  std::optional<Y4mReader> reader_;
  TestPattern pattern_;
  Picture read_;
  Picture shaped_;
};

std::shared_ptr<MediaStream> MediaStream::Start(MediaPlan plan, const Encoding& encoding, Sink sink) {
  std::shared_ptr<MediaStream> stream(new MediaStream(std::move(plan), encoding, std::move(sink)));
  StartThread("sim_frames", [stream] { stream->Run(); });
  return stream;
}

MediaStream::MediaStream(MediaPlan plan, const Encoding& encoding, Sink sink)
    : plan_(std::move(plan)), sink_(std::move(sink)), frameRate_(encoding.frameRate) {
  shape_ = {encoding.width, encoding.height, plan_.rotation, plan_.strideExtra};
}

void MediaStream::Retune(const Encoding& encoding) {
  const std::lock_guard lock(mutex_);
  shape_.width = encoding.width;
  shape_.height = encoding.height;
  frameRate_ = encoding.frameRate;
}

void MediaStream::Stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  stopped_.notify_all();
}

void MediaStream::LimitRate(std::int64_t framesPerSecond) {
  rateLimit = framesPerSecond;
}

void MediaStream::Run() try {
  Source source(plan_);
  Pacer pacer(Rate(), Pacer::Clock::now());
  std::int64_t number = 0;
  while (WaitUntil(pacer.Due()) && !CallbackGate::IsClosed()) {
    if (!IsSilent(number)) Deliver(source, number++);
    pacer.SetRate(Rate());
    pacer.Advance(Pacer::Clock::now());
  }
} catch (const std::exception& failure) {
  Journal::Get().Violation(failure.what());
}

void MediaStream::Deliver(Source& source, std::int64_t number) {
  ApplyChanges(number);
  Shape shape;
  {
    const std::lock_guard lock(mutex_);
    if (stop_) return;
    shape = shape_;
  }
  FrameFacts facts{number, shape.rotation, RenderTimeNowMs(), false};
  facts.sizeChanged = shape.width != lastShape_.width || shape.height != lastShape_.height;
  lastShape_ = shape;
  sink_(source.Next(shape, number, facts.renderTimeMs), facts);
}

void MediaStream::ApplyChanges(std::int64_t number) {
  const std::lock_guard lock(mutex_);
  for (const auto& change : plan_.changes) {
    if (change.afterFrames != number) continue;
    if (change.width > 0) shape_.width = change.width;
    if (change.height > 0) shape_.height = change.height;
    if (change.rotation >= 0) shape_.rotation = change.rotation;
    if (change.strideExtra >= 0) shape_.strideExtra = change.strideExtra;
  }
}

bool MediaStream::WaitUntil(Pacer::Clock::time_point due) {
  std::unique_lock lock(mutex_);
  return !stopped_.wait_until(lock, due, [this] { return stop_; });
}

bool MediaStream::IsSilent(std::int64_t number) {
  if (plan_.silentAfterFrames < 0 || number != plan_.silentAfterFrames) return false;
  const auto now = Pacer::Clock::now();
  if (silentSince_ == Pacer::Clock::time_point{}) silentSince_ = now;
  return plan_.silentForMs < 0 || now - silentSince_ < std::chrono::milliseconds(plan_.silentForMs);
}

std::int64_t MediaStream::Rate() {
  const std::int64_t limit = rateLimit;
  const std::lock_guard lock(mutex_);
  const std::int64_t rate = limit > 0 ? std::min(limit, frameRate_) : frameRate_;
  return std::max<std::int64_t>(rate, 1);
}

}  // namespace sim
