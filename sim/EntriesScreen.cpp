// Screen sharing.
#include "Entry.h"
#include "LocalMedia.h"
#include "Screens.h"

namespace sim {
namespace {

constexpr std::int64_t kVideo = 2;  // a bit of the media that is published

std::int64_t Publish(std::int64_t media, bool on) {
  if ((media & kVideo) != 0) LocalMedia::Get().PublishScreen(on);
  return 0;
}

constexpr std::int64_t kDpi = 96;

}  // namespace
}  // namespace sim

SIM_ENTRY(2, SCPublishScreen, [](std::int64_t media, std::int64_t) { return sim::Publish(media, true); })
SIM_ENTRY(2, SCUnpublishScreen, [](std::int64_t media, std::int64_t) { return sim::Publish(media, false); })
SIM_ENTRY(3, StartScreenCapture, [](std::int64_t id, bool isDesktop, std::int64_t channel) {
  return sim::Screens::Get().StartCapture(id, isDesktop, channel);
})
SIM_ENTRY(1, StopScreenCapture, [](std::int64_t channel) { return sim::Screens::Get().StopCapture(channel); })
SIM_ENTRY(2, GetCaptureRect,
          [](std::int64_t channel, ScreenRect* out) { *out = sim::Screens::Get().CaptureRect(channel); })
SIM_ENTRY(1, StartScreenAudioCapture,
          [](std::int64_t channel) { return sim::Screens::Get().CaptureAudio(channel, true); })
SIM_ENTRY(1, StopScreenAudioCapture,
          [](std::int64_t channel) { return sim::Screens::Get().CaptureAudio(channel, false); })

SIM_ENTRY(1, SCGetDesktopList, [](DesktopList* out) { sim::Screens::Get().LendDesktops(*out); })
SIM_ENTRY(2, FreeDesktopListVector,
          [](DesktopInfo* desktops, std::int32_t count) { sim::Screens::Get().TakeBack(desktops, count); })
SIM_ENTRY(1, SCGetWindowList, [](WindowList* out) { sim::Screens::Get().LendWindows(*out); })
SIM_ENTRY(2, FreeWindowListVector,
          [](WindowInfo* windows, std::int32_t count) { sim::Screens::Get().TakeBack(windows, count); })
SIM_ENTRY(2, GetDesktopThumbnailAsyn,
          [](std::int64_t width, std::int64_t height) { sim::Screens::Get().SendDesktopThumbnails(width, height); })
SIM_ENTRY(2, GetWindowThumbnailAsyn,
          [](std::int64_t width, std::int64_t height) { sim::Screens::Get().SendWindowThumbnails(width, height); })
SIM_ENTRY(2, GetDpiByPoint, [](std::int64_t, std::int64_t) { return sim::kDpi; })

SIM_PLAIN(2, EnableCursorShare)
SIM_PLAIN(1, setInstallAudioPluginAuthorizationDescription)
SIM_PLAIN(2, AddIgnoreWindow)
SIM_PLAIN(2, RemoveIgnoreWindow)
SIM_PLAIN(1, ClearIgnoreWindow)
SIM_PLAIN(2, AddIncludeWindow)
SIM_PLAIN(2, RemoveIncludeWindow)
SIM_PLAIN(1, ClearIncludeWindow)
SIM_PLAIN(2, SCSetCaptureFps)
SIM_PLAIN(2, SCSetCaptureFrameResolutionLimit)
SIM_PLAIN(2, SCSetScreenCaptureConfig)
SIM_PLAIN(2, SCShowCursor)
SIM_PLAIN(2, EnablePromptWindow)
SIM_PLAIN(2, SCSetAutoActiveShareWindow)
SIM_PLAIN(2, SCEnableHighFps)
SIM_PLAIN(2, SetScreenFrameType)
SIM_PLAIN(4, SetExternalAudioSource)
SIM_PLAIN(2, StartAudioMixing)
SIM_PLAIN(0, StopAudioMixing)

SIM_PLAIN(2, ShareCaptureCard)
SIM_PLAIN(3, StartCaptureCard)
SIM_PLAIN(1, StopCaptureCard)
SIM_PLAIN(1, PublishCaptureCard)
SIM_PLAIN(0, UnpublishCaptureCard)
