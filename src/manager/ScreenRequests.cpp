#include <string>
#include <vector>

#include "LentList.h"
#include "RecordArguments.h"
#include "Tables.h"
#include "log/LogInstance.h"
#include "records/ScreenRecords.h"

namespace TESSARIN_LUMARC {

namespace {

// What SCPublishScreen and SCUnpublishScreen take. A share publishes its video; its stop unpublishes all. Wanted.
constexpr std::int64_t kAudio = 1;
constexpr std::int64_t kVideo = 2;
constexpr std::int64_t kAll = 3;

// A record, and a second argument, go to the entry.
template <auto Entry, class ArgumentRecord>
void ForwardRecord(IPCData& request) {
  const auto record = ReadRecordArgument<ArgumentRecord>(request);
  (Api().*Entry)(&record, request.parsed.Integer(1));
  ReplyNull(request);
}

// The engine's form of the parameter: its pointers lead into the record, and live as long as both.
class FlatIgnoreWindow {
 public:
  explicit FlatIgnoreWindow(const IgnoreWindowParam& param)
      : flat_{.ignoreType = param.ignoreType,
              .handleType = param.windowHandle.type_field.c_str(),
              .handleData = param.windowHandle.data.data(),
              .handleDataCount = static_cast<std::int32_t>(param.windowHandle.data.size()),
              .ignoreTypeByPid = param.ignoreTypeByPid,
              .windowPid = param.windowPid,
              .windowTitles = nullptr,
              .windowTitleCount = static_cast<std::int32_t>(param.windowTitles.size()),
              .windowLevel = param.windowLevel,
              .windowHandleIntValue = param.windowHandleIntValue} {
    for (const auto& title : param.windowTitles) titles_.push_back(title.c_str());
    flat_.windowTitles = titles_.data();
  }
  FlatIgnoreWindow(const FlatIgnoreWindow&) = delete;
  FlatIgnoreWindow& operator=(const FlatIgnoreWindow&) = delete;

  [[nodiscard]] const EngineIgnoreWindowParam* Get() const { return &flat_; }

 private:
  std::vector<const char*> titles_;
  EngineIgnoreWindowParam flat_;
};

template <auto Entry>
void PassWindow(IPCData& request, const IgnoreWindowParam& param) {
  (Api().*Entry)(FlatIgnoreWindow(param).Get(), request.parsed.Integer(1));
  ReplyNull(request);
}

template <auto Entry>
void ForwardWindow(IPCData& request) {
  PassWindow<Entry>(request, ReadRecordArgument<IgnoreWindowParam>(request));
}

void AddIgnoreWindow(IPCData& request) {
  const auto param = ReadRecordArgument<IgnoreWindowParam>(request);
  TESSARIN_LOG::Log("AddIgnoreWindow ignoreType={},ignoreTypeByPid:{}", param.ignoreType, param.ignoreTypeByPid);
  PassWindow<&EngineApi::AddIgnoreWindow>(request, param);
}

void SetVideoCaptureConfig(IPCData& request) {
  const auto config = ReadRecordArgument<VideoCaptureConfig>(request);
  Api().SetVideoCaptureConfig(&config);
  ReplyNull(request);
}

template <std::int64_t kMedia>
void Publish(IPCData& request) {
  ReplyValue(request, Api().SCPublishScreen(kMedia, 0));
}

template <std::int64_t kMedia>
void Unpublish(IPCData& request) {
  ReplyValue(request, Api().SCUnpublishScreen(kMedia, 0));
}

void StartScreenCapture(IPCData& request) {
  const std::int64_t id = request.parsed.Integer(0);
  ReplyValue(request, Api().StartScreenCapture(id, request.parsed.Boolean(1), 0));
}

void StopScreenCapture(IPCData& request) {
  ReplyValue(request, Api().StopScreenCapture(0));
}

// A chain ends with the first result that is not 0, and that is the reply.
template <bool kDesktop>
void Share(IPCData& request) {
  const std::int64_t id = request.parsed.Integer(0);
  const std::int64_t channel = request.parsed.Integer(1);
  Api().SetVideoSourceType(1, 0, 0, 0);
  const std::int64_t started = Api().StartScreenCapture(id, kDesktop, channel);
  if (started != 0) return ReplyValue(request, started);
  Publish<kVideo>(request);
}

// A stop that fails leaves the stream published.
void StopShareScreen(IPCData& request) {
  const std::int64_t channel = request.parsed.Integer(0);
  const std::int64_t video = Api().StopScreenCapture(channel);
  if (video != 0) return ReplyValue(request, video);
  const std::int64_t audio = Api().StopScreenAudioCapture(channel);
  if (audio != 0) return ReplyValue(request, audio);
  Unpublish<kAll>(request);
}

// On a channel other than 0 nothing is published, and a capture that starts is not answered at all. Wanted.
void ScShareAudio(IPCData& request) {
  const std::int64_t channel = request.parsed.Integer(0);
  const std::int64_t started = Api().StartScreenAudioCapture(channel);
  if (started != 0) return ReplyValue(request, started);
  if (channel != 0) return;
  Publish<kAudio>(request);
}

void ScStopShareAudio(IPCData& request) {
  const std::int64_t channel = request.parsed.Integer(0);
  std::int64_t result = Api().StopScreenAudioCapture(channel);
  if (channel == 0) result = Api().SCUnpublishScreen(kAudio, 0);
  ReplyValue(request, result);
}

void ScGetCaptureRect(IPCData& request) {
  ScreenRect rect{};
  Api().GetCaptureRect(request.parsed.Integer(0), &rect);
  ReplyValue(request, rect);
}

void ScGetDesktopList(IPCData& request) {
  DesktopList list{};
  Api().SCGetDesktopList(&list);
  const LentList lent(list.desktops, list.count, Api().FreeDesktopListVector);
  ReplyValue(request, lent.Copy<DesktopInfo>());
}

void ScGetWindowList(IPCData& request) {
  WindowList list{};
  Api().SCGetWindowList(&list);
  const LentList lent(list.windows, list.count, Api().FreeWindowListVector);
  ReplyValue(request, lent.Copy<WindowRecord>());
}

constexpr auto kRows = Rows(
    // ---- Forwarded ----
    Forward<&EngineApi::EnableCursorShare, Reply::Null>("EnableCursorShare"),
    Forward<&EngineApi::ClearIgnoreWindow, Reply::Null>("ClearIgnoreWindow"),
    Forward<&EngineApi::ClearIncludeWindow, Reply::Null>("ClearIncludeWindow"),
    Forward<&EngineApi::SCSetCaptureFps, Reply::Null>("ScSetCaptureFps"),
    Forward<&EngineApi::SCShowCursor, Reply::Null>("ScShowCursor"),
    Forward<&EngineApi::EnablePromptWindow, Reply::Null>("EnablePromptWindow"),
    Forward<&EngineApi::SCSetAutoActiveShareWindow, Reply::Null>("ScSetAutoActiveShareWindow"),
    Forward<&EngineApi::SCEnableHighFps, Reply::Null>("ScEnableHighFps"),
    Forward<&EngineApi::SetScreenFrameType, Reply::Null>("SetScreenFrameType"),
    Forward<&EngineApi::SetExternalAudioSource, Reply::Null>("SetExternalAudioSource"),
    Forward<&EngineApi::setInstallAudioPluginAuthorizationDescription, Reply::Number>(
        "SetInstallAudioPluginAuthorizationDescription"),
    Forward<&EngineApi::GetDpiByPoint, Reply::Number>("GetDpiByPoint"),
    Forward<&EngineApi::ShareCaptureCard, Reply::Number>("ShareCaptureCard"),
    Forward<&EngineApi::StartCaptureCard, Reply::Number>("StartCaptureCard"),
    Forward<&EngineApi::StopCaptureCard, Reply::Number>("StopCaptureCard"),
    Forward<&EngineApi::PublishCaptureCard, Reply::Number>("PublishCaptureCard"),
    Forward<&EngineApi::UnpublishCaptureCard, Reply::Number>("UnpublishCaptureCard"),
    // ---- With a handler of their own ----
    RequestRow{"AddIgnoreWindow", AddIgnoreWindow},
    RequestRow{"RemoveIgnoreWindow", ForwardWindow<&EngineApi::RemoveIgnoreWindow>},
    RequestRow{"AddIncludeWindow", ForwardWindow<&EngineApi::AddIncludeWindow>},
    RequestRow{"RemoveIncludeWindow", ForwardWindow<&EngineApi::RemoveIncludeWindow>},
    RequestRow{"ScSetCaptureFrameResolutionLimit",
               ForwardRecord<&EngineApi::SCSetCaptureFrameResolutionLimit, ResolutionLimit>},
    RequestRow{"ScSetScreenCaptureConfig", ForwardRecord<&EngineApi::SCSetScreenCaptureConfig, ScreenCaptureConfig>},
    RequestRow{"SetVideoCaptureConfig", SetVideoCaptureConfig}, RequestRow{"ScSharePublishScreen", Publish<kAll>},
    RequestRow{"ScShareUnpublishScreen", Unpublish<kAll>}, RequestRow{"StartScreenCapture", StartScreenCapture},
    RequestRow{"StopScreenCapture", StopScreenCapture}, RequestRow{"ShareDesktop", Share<true>},
    RequestRow{"ShareWindow", Share<false>}, RequestRow{"StopShareScreen", StopShareScreen},
    RequestRow{"ScShareAudio", ScShareAudio}, RequestRow{"ScStopShareAudio", ScStopShareAudio},
    RequestRow{"ScGetCaptureRect", ScGetCaptureRect}, RequestRow{"ScGetDesktopList", ScGetDesktopList},
    RequestRow{"ScGetWindowList", ScGetWindowList}, RequestRow{"EnableHighFpsShareForVideoContent", ReplyNull},
    // The engine's entries of these two names belong to StartPlayAudio and StopPlayAudio of the devices.
    RequestRow{"StartAudioMixing", ReplyNull}, RequestRow{"StopAudioMixing", ReplyNull},
    RequestRow{"ScEnableDynamicFps", NeverAnswered}, RequestRow{"ScEnableHighResolution", NeverAnswered});
static_assert(kRows.size() + 2 == 43);  // and the two thumbnail requests

}  // namespace

std::span<const RequestRow> ScreenRequestRows() {
  return kRows;
}

}  // namespace TESSARIN_LUMARC
