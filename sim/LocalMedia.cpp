#include "LocalMedia.h"

#include "Callbacks.h"
#include "Frames.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::int64_t kCameraIndex = 0;
constexpr std::int64_t kScreenIndex = 1;

std::string SidOf(const std::string& userId, std::int64_t streamIndex) {
  return userId + "_" + std::to_string(streamIndex);
}

MediaPlan PlanOf(const std::string& label, const LocalSource& source) {
  MediaPlan plan;
  plan.label = label;
  plan.video = source.video;
  return plan;
}

void TellLocalFrame(std::int64_t streamIndex, const FrameFacts& facts, const VideoFrameInfo& info) {
  if (facts.number == 0) Emit<&OnFirstLocalVideoFrameCaptured>(streamIndex, info);
  if (facts.sizeChanged) Emit<&OnLocalVideoSizeChanged>(streamIndex, info);
}

}  // namespace

LocalMedia& LocalMedia::Get() {
  static auto* const media = new LocalMedia;
  return *media;
}

LocalMedia::LocalMedia() {
  published_[kScreenIndex].source.encoding.width = 1280;
  published_[kScreenIndex].source.encoding.height = 720;
  published_[kScreenIndex].source.encoding.frameRate = 15;
}

void LocalMedia::SetCamera(const LocalSource& source) {
  const std::lock_guard lock(mutex_);
  published_[kCameraIndex].source = source;
  if (preview_) preview_->Retune(source.encoding);
  if (auto& stream = published_[kCameraIndex].stream) stream->Retune(source.encoding);
}

LocalSource LocalMedia::Camera() const {
  const std::lock_guard lock(mutex_);
  return published_[kCameraIndex].source;
}

void LocalMedia::SetScreen(const LocalSource& source) {
  const std::lock_guard lock(mutex_);
  published_[kScreenIndex].source = source;
  if (auto& stream = published_[kScreenIndex].stream) stream->Retune(source.encoding);
}

LocalSource LocalMedia::Screen() const {
  const std::lock_guard lock(mutex_);
  return published_[kScreenIndex].source;
}

void LocalMedia::SetPreview(bool on) {
  const std::lock_guard lock(mutex_);
  if (on == (preview_ != nullptr)) return;
  if (!on) {
    preview_->Stop();
    preview_.reset();
    return;
  }
  const LocalSource& source = published_[kCameraIndex].source;
  preview_ = MediaStream::Start(PlanOf("PREVIEW", source), source.encoding,
                                [](const Picture& picture, const FrameFacts& facts) {
                                  const VideoFrameInfo info = FrameInfoOf(picture, facts, false);
                                  TellLocalFrame(kCameraIndex, facts, info);
                                  EmitFrame("", picture, info);
                                });
}

void LocalMedia::EnableAudio(bool on) {
  if (audio_.exchange(on) == on) return;
  Stage::Get().Now([on] { Emit<&OnLocalAudioStateChanged>(std::int64_t{on}, std::int64_t{0}); });
}

void LocalMedia::EnableVideo(bool on) {
  {
    const std::lock_guard lock(mutex_);
    published_[kCameraIndex].wanted = on;
  }
  Stage::Get().Now([this, on] {
    Emit<&OnLocalVideoStateChanged>(std::int64_t{on}, std::int64_t{0});
    Settle(kCameraIndex);
  });
}

bool LocalMedia::IsVideoEnabled() const {
  const std::lock_guard lock(mutex_);
  return published_[kCameraIndex].wanted;
}

void LocalMedia::PublishScreen(bool on) {
  {
    const std::lock_guard lock(mutex_);
    published_[kScreenIndex].wanted = on;
  }
  Stage::Get().Now([this] { Settle(kScreenIndex); });
}

void LocalMedia::OnRoomJoined(const std::string& userId) {
  {
    const std::lock_guard lock(mutex_);
    userId_ = userId;
  }
  Settle(kCameraIndex);
  Settle(kScreenIndex);
}

void LocalMedia::OnRoomLeft() {
  {
    const std::lock_guard lock(mutex_);
    userId_.clear();
    for (const auto& published : published_) {
      if (published.stream) published.stream->Stop();
    }
  }
  Stage::Get().Now([this] {
    Settle(kCameraIndex);
    Settle(kScreenIndex);
  });
}

// On the stage's thread alone, so that the announcements keep their order.
void LocalMedia::Settle(std::int64_t streamIndex) {
  std::string gone;
  std::string come;
  LocalSource source;
  {
    const std::lock_guard lock(mutex_);
    Published& published = published_[streamIndex];
    const std::string wanted = published.wanted ? userId_ : "";
    if (wanted == published.userId) return;
    if (published.stream) published.stream->Stop();
    published.stream.reset();
    gone = std::exchange(published.userId, wanted);
    come = wanted;
    source = published.source;
  }
  if (!gone.empty()) Unpublish(streamIndex, gone);
  if (!come.empty()) Publish(streamIndex, come, source);
}

void LocalMedia::Publish(std::int64_t streamIndex, const std::string& userId, const LocalSource& source) {
  const bool isScreen = streamIndex == kScreenIndex;
  EmitStreamAdded(userId, SidOf(userId, streamIndex), streamIndex, {source.encoding});
  const auto sink = [userId, streamIndex, isScreen](const Picture& picture, const FrameFacts& facts) {
    const VideoFrameInfo info = FrameInfoOf(picture, facts, isScreen);
    TellLocalFrame(streamIndex, facts, info);
    EmitFrame(userId, picture, info);
    EmitFrameSign(userId, isScreen);
  };
  const std::lock_guard lock(mutex_);
  published_[streamIndex].stream =
      MediaStream::Start(PlanOf(isScreen ? userId + " SCREEN" : userId, source), source.encoding, sink);
}

void LocalMedia::Unpublish(std::int64_t streamIndex, const std::string& userId) {
  Emit<&OnMultiStreamRemoved>(userId.c_str(), SidOf(userId, streamIndex).c_str(), streamIndex);
}

}  // namespace sim
