#pragma once

#include <ravo/engine_records.h>

#include <cstdint>
#include <string>
#include <vector>

#include "../TextOrEmpty.h"
#include "common/JsonNode.h"

// Records of screen sharing: what clients send as arguments, and the engine's lists as clients read them.
namespace TESSARIN_LUMARC {

// The native handle of a window as a typed value.
struct WindowHandle {
  std::string type_field;
  std::vector<std::int32_t> data;
};

// Names windows to leave out of a share, or to take into it.
struct IgnoreWindowParam {
  std::int64_t ignoreType = 1;  // how the window is named: one of the engine's kinds
  WindowHandle windowHandle;
  std::int64_t ignoreTypeByPid = 0;  // a second selector, for windowPid
  std::int64_t windowPid = 0;
  std::vector<std::string> windowTitles;
  std::int64_t windowLevel = 0;
  std::int64_t windowHandleIntValue = 0;
};

struct ThumbnailSize {
  std::int32_t width = 0;   // pixels
  std::int32_t height = 0;  // pixels
};

// A copy of a window that outlives the engine's list.
struct WindowRecord {
  explicit WindowRecord(const WindowInfo& window)
      : id(window.id),
        pid(window.pid),
        handle(window.handle),
        application(TextOrEmpty(window.application)),
        title(TextOrEmpty(window.title)),
        x(window.x),
        y(window.y),
        width(window.width),
        height(window.height),
        icon(TextOrEmpty(window.icon)),
        url(TextOrEmpty(window.url)) {}

  std::int64_t id;
  std::int64_t pid;
  std::int64_t handle;
  std::string application;
  std::string title;
  std::int64_t x;
  std::int64_t y;
  std::int64_t width;
  std::int64_t height;
  std::string icon;
  std::string url;
};

// A copy of a thumbnail that outlives the engine's callback.
struct ThumbnailRecord {
  explicit ThumbnailRecord(const Thumbnail& thumbnail) : id(thumbnail.id), val(TextOrEmpty(thumbnail.val)) {}

  std::int64_t id;  // of the desktop or window
  std::string val;
};

}  // namespace TESSARIN_LUMARC

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::WindowHandle> =
    Fields(Field{"type_field", &TESSARIN_LUMARC::WindowHandle::type_field},
           Field{"data", &TESSARIN_LUMARC::WindowHandle::data});

// Unlike in other records, a handle that is no object fails as such, and its data must be there.
template <>
inline void ReadRecord(JsonNode& node, TESSARIN_LUMARC::WindowHandle& out) {
  node.Find("type_field");  // for its check of the kind
  node.Get("type_field", out.type_field);
  node.Get("data", out.data, JsonNode::kMandatory);
}

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::IgnoreWindowParam> =
    Fields(Field{"ignoreType", &TESSARIN_LUMARC::IgnoreWindowParam::ignoreType},
           Field{"windowHandle", &TESSARIN_LUMARC::IgnoreWindowParam::windowHandle},
           Field{"ignoreTypeByPid", &TESSARIN_LUMARC::IgnoreWindowParam::ignoreTypeByPid},
           Field{"windowPid", &TESSARIN_LUMARC::IgnoreWindowParam::windowPid},
           Field{"windowTitles", &TESSARIN_LUMARC::IgnoreWindowParam::windowTitles},
           Field{"windowLevel", &TESSARIN_LUMARC::IgnoreWindowParam::windowLevel},
           Field{"windowHandleIntValue", &TESSARIN_LUMARC::IgnoreWindowParam::windowHandleIntValue});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::ThumbnailSize> = Fields(
    Field{"width", &TESSARIN_LUMARC::ThumbnailSize::width}, Field{"height", &TESSARIN_LUMARC::ThumbnailSize::height});

template <>
inline constexpr auto kFields<ResolutionLimit> =
    Fields(Field{"maxResolutionWidth", &ResolutionLimit::maxResolutionWidth},
           Field{"maxResolutionHeight", &ResolutionLimit::maxResolutionHeight});

template <>
inline constexpr auto kFields<ScreenCaptureConfig> = Fields(
    Field{"scFramePublishKeepAliveIntervalMs", &ScreenCaptureConfig::scFramePublishKeepAliveIntervalMs},
    Field{"scMovedWindowStableKeepMinDurationTimeMs", &ScreenCaptureConfig::scMovedWindowStableKeepMinDurationTimeMs});

template <>
inline constexpr auto kFields<VideoCaptureConfig> = Fields(Field{"width", &VideoCaptureConfig::width},
                                                           Field{"height", &VideoCaptureConfig::height},
                                                           Field{"frameRate", &VideoCaptureConfig::frameRate},
                                                           Field{"capturePreference",
                                                                 &VideoCaptureConfig::capturePreference});

template <>
inline constexpr auto kFields<ScreenRect> = Fields(Field{"x", &ScreenRect::x}, Field{"y", &ScreenRect::y},
                                                   Field{"width", &ScreenRect::width},
                                                   Field{"height", &ScreenRect::height});

template <>
inline constexpr auto kFields<DesktopInfo> = Fields(Field{"id", &DesktopInfo::id},
                                                    Field{"handle", &DesktopInfo::handle},
                                                    Field{"primary", &DesktopInfo::primary},
                                                    Field{"x", &DesktopInfo::x}, Field{"y", &DesktopInfo::y},
                                                    Field{"width", &DesktopInfo::width},
                                                    Field{"height", &DesktopInfo::height});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::WindowRecord> =
    Fields(Field{"id", &TESSARIN_LUMARC::WindowRecord::id}, Field{"pid", &TESSARIN_LUMARC::WindowRecord::pid},
           Field{"handle", &TESSARIN_LUMARC::WindowRecord::handle},
           Field{"application", &TESSARIN_LUMARC::WindowRecord::application},
           Field{"title", &TESSARIN_LUMARC::WindowRecord::title}, Field{"x", &TESSARIN_LUMARC::WindowRecord::x},
           Field{"y", &TESSARIN_LUMARC::WindowRecord::y}, Field{"width", &TESSARIN_LUMARC::WindowRecord::width},
           Field{"height", &TESSARIN_LUMARC::WindowRecord::height}, Field{"icon", &TESSARIN_LUMARC::WindowRecord::icon},
           Field{"url", &TESSARIN_LUMARC::WindowRecord::url});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::ThumbnailRecord> =
    Fields(Field{"id", &TESSARIN_LUMARC::ThumbnailRecord::id}, Field{"val", &TESSARIN_LUMARC::ThumbnailRecord::val});

}  // namespace TESSARIN_COMMON
