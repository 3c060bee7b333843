#include "Screens.h"

#include <algorithm>

#include "Callbacks.h"
#include "Stage.h"

namespace sim {
namespace {

constexpr std::chrono::milliseconds kThumbnailDelay{10};

template <auto Registration>
void SendThumbnails(const std::vector<std::int64_t>& ids, std::int64_t width, std::int64_t height) {
  Stage::Get().After(kThumbnailDelay, [=] {
    std::vector<std::string> texts;
    texts.reserve(ids.size());
    for (const auto id : ids) {
      texts.push_back("sim-thumbnail:" + std::to_string(id) + ":" + std::to_string(width) + "x" +
                      std::to_string(height));
    }
    std::vector<Thumbnail> thumbnails;
    thumbnails.reserve(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) thumbnails.push_back({ids[i], texts[i].c_str()});
    Emit<Registration>(thumbnails.data(), static_cast<std::int32_t>(thumbnails.size()));
  });
}

enum CaptureState : std::int64_t { kEnded = 0, kRuns = 1 };

void TellStatus(std::int64_t state, std::int64_t id, std::int64_t channel) {
  Stage::Get().Now([=] { Emit<&OnScreenCaptureStatus>(state, id, channel); });
}

void TellMoved(std::int64_t id, bool isDesktop, std::int64_t channel) {
  Stage::Get().Now([=] {
    if (isDesktop) {
      Emit<&OnShareDesktopChanged>(id, channel);
    } else {
      Emit<&OnShareWindowChanged>(id, std::int64_t{kRuns}, channel);
    }
  });
}

bool IsSame(const ScreenRect& a, const ScreenRect& b) {
  return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

}  // namespace

Screens& Screens::Get() {
  static auto* const screens = new Screens;
  return *screens;
}

Screens::Screens() {
  Replace({{{1, 1, 0, 0, 1920, 1080}, {2, 0, 1920, 0, 1280, 1024}},
           {{101, 4101, "Editor", "Minutes of the meeting", 40, 60, 1024, 768},
            {102, 4102, "Browser", "Start page", 200, 120, 1280, 800}}});
}

void Screens::Replace(ScreenScene scene) {
  const std::lock_guard lock(mutex_);
  scenes_.push_back(std::make_unique<const ScreenScene>(std::move(scene)));
  FollowScene();
}

// With the lock.
void Screens::FollowScene() {
  for (auto capture = captures_.begin(); capture != captures_.end();) {
    auto& [channel, what] = *capture;
    ScreenRect rect{};
    if (!FindRect(what.id, what.isDesktop, rect)) {
      TellStatus(kEnded, what.id, channel);
      capture = captures_.erase(capture);
      continue;
    }
    if (!IsSame(rect, what.rect)) TellMoved(what.id, what.isDesktop, channel);
    what.rect = rect;
    ++capture;
  }
}

void Screens::LendDesktops(DesktopList& out) {
  const std::lock_guard lock(mutex_);
  std::vector<DesktopInfo> rows;
  for (const auto& desktop : Scene().desktops) {
    rows.push_back(
        {desktop.id, 0x1000 + desktop.id, desktop.primary, desktop.x, desktop.y, desktop.width, desktop.height});
  }
  out.desktops = lentDesktops_.Lend(rows);
  out.count = static_cast<std::int32_t>(rows.size());
}

void Screens::LendWindows(WindowList& out) {
  const std::lock_guard lock(mutex_);
  std::vector<WindowInfo> rows;
  for (const auto& window : Scene().windows) {
    rows.push_back({window.id, window.pid, 0x2000 + window.id, window.application.c_str(), window.title.c_str(),
                    window.x, window.y, window.width, window.height, nullptr, nullptr});
  }
  out.windows = lentWindows_.Lend(rows);
  out.count = static_cast<std::int32_t>(rows.size());
}

void Screens::SendDesktopThumbnails(std::int64_t width, std::int64_t height) {
  SendThumbnails<&OnDesktopThumbnail>(Ids(true), width, height);
}

void Screens::SendWindowThumbnails(std::int64_t width, std::int64_t height) {
  SendThumbnails<&OnWindowThumbnail>(Ids(false), width, height);
}

std::int64_t Screens::StartCapture(std::int64_t id, bool isDesktop, std::int64_t channel) {
  const std::lock_guard lock(mutex_);
  Capture capture{id, isDesktop, {}};
  if (!FindRect(id, isDesktop, capture.rect)) {
    Stage::Get().Now([] { Emit<&OnScreenCaptureStartResult>(std::int64_t{-1}); });
    return -1;
  }
  captures_[channel] = capture;
  TellStatus(kRuns, id, channel);
  return 0;
}

std::int64_t Screens::StopCapture(std::int64_t channel) {
  const std::lock_guard lock(mutex_);
  const auto found = captures_.find(channel);
  if (found == captures_.end()) return 0;
  TellStatus(kEnded, found->second.id, channel);
  captures_.erase(found);
  return 0;
}

std::int64_t Screens::CaptureAudio(std::int64_t channel, bool on) {
  const std::lock_guard lock(mutex_);
  const bool changes = on ? audioChannels_.insert(channel).second : audioChannels_.erase(channel) != 0;
  if (changes && on) Stage::Get().Now([] { Emit<&OnAudioCapturerStart>(); });
  if (changes && !on) Stage::Get().Now([] { Emit<&OnAudioCapturerStop>(); });
  return 0;
}

ScreenRect Screens::CaptureRect(std::int64_t channel) const {
  const std::lock_guard lock(mutex_);
  const auto found = captures_.find(channel);
  return found == captures_.end() ? ScreenRect{} : found->second.rect;
}

std::int64_t Screens::PidOf(std::int64_t windowId) const {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(Scene().windows, windowId, &Window::id);
  return found == Scene().windows.end() ? 0 : found->pid;
}

void Screens::ReportLosses() const {
  lentDesktops_.ReportLosses();
  lentWindows_.ReportLosses();
}

std::vector<std::int64_t> Screens::Ids(bool desktops) const {
  const std::lock_guard lock(mutex_);
  std::vector<std::int64_t> ids;
  if (desktops) std::ranges::transform(Scene().desktops, std::back_inserter(ids), &Desktop::id);
  if (!desktops) std::ranges::transform(Scene().windows, std::back_inserter(ids), &Window::id);
  return ids;
}

bool Screens::FindRect(std::int64_t id, bool isDesktop, ScreenRect& out) const {
  const auto find = [&](const auto& rows) {
    const auto found = std::ranges::find_if(rows, [&](const auto& row) { return row.id == id; });
    if (found != rows.end()) out = {found->x, found->y, found->width, found->height};
    return found != rows.end();
  };
  return isDesktop ? find(Scene().desktops) : find(Scene().windows);
}

}  // namespace sim
