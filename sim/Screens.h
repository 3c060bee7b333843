#pragma once

#include <ravo/engine_abi.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "LentLists.h"
#include "common/Fields.h"

namespace sim {

// A desktop or a window that can be shared.
struct Desktop {
  std::int64_t id = 0;
  std::int64_t primary = 0;
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 1920;
  std::int64_t height = 1080;
};

struct Window {
  std::int64_t id = 0;
  std::int64_t pid = 0;
  std::string application;
  std::string title;
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 800;
  std::int64_t height = 600;
};

struct ScreenScene {
  std::vector<Desktop> desktops;
  std::vector<Window> windows;
};

// What there is to share, its thumbnails, and what is being captured. Entries come on Ravo's thread; answers go out on
// the stage's, thumbnails of a kind in the order of the requests.
class Screens {
 public:
  static Screens& Get();

  // What is being captured follows its desktop or window, and ends with it.
  void Replace(ScreenScene scene);

  // The entries.
  void LendDesktops(DesktopList& out);
  void TakeBack(DesktopInfo* desktops, std::int32_t count) { lentDesktops_.TakeBack(desktops, count); }
  void LendWindows(WindowList& out);
  void TakeBack(WindowInfo* windows, std::int32_t count) { lentWindows_.TakeBack(windows, count); }
  void SendDesktopThumbnails(std::int64_t width, std::int64_t height);
  void SendWindowThumbnails(std::int64_t width, std::int64_t height);
  std::int64_t StartCapture(std::int64_t id, bool isDesktop, std::int64_t channel);
  std::int64_t StopCapture(std::int64_t channel);
  std::int64_t CaptureAudio(std::int64_t channel, bool on);
  // All 0 for a channel that captures nothing.
  [[nodiscard]] ScreenRect CaptureRect(std::int64_t channel) const;
  // Of a window by its id; 0 if there is none.
  [[nodiscard]] std::int64_t PidOf(std::int64_t windowId) const;

  void ReportLosses() const;

 private:
  struct Capture {
    std::int64_t id = 0;
    bool isDesktop = false;
    ScreenRect rect{};
  };

  Screens();
  void FollowScene();
  [[nodiscard]] std::vector<std::int64_t> Ids(bool desktops) const;
  bool FindRect(std::int64_t id, bool isDesktop, ScreenRect& out) const;
  [[nodiscard]] const ScreenScene& Scene() const { return *scenes_.back(); }

  mutable std::mutex mutex_;
  LentLists<DesktopInfo> lentDesktops_{"desktops"};
  LentLists<WindowInfo> lentWindows_{"windows"};
  // Guarded by mutex_. The last scene counts; the earlier ones are kept, as lists that are out point to their texts.
  std::vector<std::unique_ptr<const ScreenScene>> scenes_;
  std::map<std::int64_t, Capture> captures_;  // by channel
  std::set<std::int64_t> audioChannels_;
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::Desktop> = Fields(Field{"id", &sim::Desktop::id},
                                                     Field{"primary", &sim::Desktop::primary},
                                                     Field{"x", &sim::Desktop::x}, Field{"y", &sim::Desktop::y},
                                                     Field{"width", &sim::Desktop::width},
                                                     Field{"height", &sim::Desktop::height});

template <>
inline constexpr auto kFields<sim::Window> = Fields(Field{"id", &sim::Window::id}, Field{"pid", &sim::Window::pid},
                                                    Field{"application", &sim::Window::application},
                                                    Field{"title", &sim::Window::title}, Field{"x", &sim::Window::x},
                                                    Field{"y", &sim::Window::y}, Field{"width", &sim::Window::width},
                                                    Field{"height", &sim::Window::height});

template <>
inline constexpr auto kFields<sim::ScreenScene> = Fields(Field{"desktops", &sim::ScreenScene::desktops},
                                                         Field{"windows", &sim::ScreenScene::windows});

}  // namespace TESSARIN_COMMON
