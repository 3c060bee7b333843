#include "ScreenManager.h"

#include <string>
#include <utility>

#include "Events.h"
#include "RavoManager.h"
#include "RecordArguments.h"
#include "Tables.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_LOG::Log;
using Kind = ScreenManager::ThumbnailKind;

// What differs between the two kinds of thumbnails.
struct KindTexts {
  const char* requestName;
  const char* resultName;
  TESSARIN_TASK::Location place;
};

constexpr KindTexts kDesktopTexts{"GetDesktopThumbnailAsyn",
                                  "OnDesktopThumbnail",
                                  {"ScreenManager::OnDesktopThumbnail", "src/manager/ScreenManager"}};
constexpr KindTexts kWindowTexts{
    "GetWindowThumbnailAsyn", "WindowThumbnail", {"ScreenManager::WindowThumbnail", "src/manager/ScreenManager"}};

constexpr const KindTexts& Texts(Kind kind) {
  return kind == Kind::Desktop ? kDesktopTexts : kWindowTexts;
}

// The engine's array is gone when this returns, so it is copied here.
template <Kind kKind>
void ThumbnailsCame(const Thumbnail* thumbnails, std::int32_t count) {
  Log("[{}] {}", Texts(kKind).resultName, count);
  std::vector<ThumbnailRecord> records(thumbnails, thumbnails + (count > 0 ? count : 0));
  auto& server = RavoManager::GetInstance();
  server.Tasks().PostTask(Texts(kKind).place, [&server, records = std::move(records)] {
    server.Screen().AnswerThumbnails(kKind, records);
  });
}

constexpr auto kEvents = EventRows(
    Plain<&EngineApi::OnScreenCaptureStatus, "ScreenCaptureStatus">("OnScreenCaptureStatus"),
    Plain<&EngineApi::OnShareCaptureCardSize, "ShareCaptureCardSize">("OnShareCaptureCardSize"),
    Own<&EngineApi::OnDesktopThumbnail, ThumbnailsCame<Kind::Desktop>>("OnDesktopThumbnail", ""),
    Own<&EngineApi::OnWindowThumbnail, ThumbnailsCame<Kind::Window>>("OnWindowThumbnail", ""),
    Plain<&EngineApi::OnShareWindowChanged, "OnShareWindowChanged">("OnShareWindowChanged"),
    Plain<&EngineApi::OnShareDesktopChanged, "OnShareDesktopChanged">("OnShareDesktopChanged"),
    Plain<&EngineApi::OnAudioCapturerStart, "AudioCapturerStart">("OnAudioCapturerStart"),
    Plain<&EngineApi::OnAudioCapturerStop, "AudioCapturerStop">("OnAudioCapturerStop"),
    Plain<&EngineApi::OnAudioCapturerNoAccess, "AudioCapturerNoAccess">("OnAudioCapturerNoAccess"),
    Plain<&EngineApi::OnAudioCapturerBeginInstall, "AudioCapturerBeginInstall">("OnAudioCapturerBeginInstall"),
    Plain<&EngineApi::OnAudioCapturerCancelInstall, "AudioCapturerCancelInstall">("OnAudioCapturerCancelInstall"),
    Plain<&EngineApi::OnAudioCapturerInstallSuccess, "AudioCapturerInstallSuccess">("OnAudioCapturerInstallSuccess"),
    Plain<&EngineApi::OnAudioCapturerInstallFail, "AudioCapturerInstallFail">("OnAudioCapturerInstallFail"),
    Plain<&EngineApi::OnScreenCastUserJoined, "OnScreenCastUserJoined">("OnScreenCastUserJoined"),
    Plain<&EngineApi::OnScreenCastUserOffline, "OnScreenCastUserOffline">("OnScreenCastUserOffline"),
    Plain<&EngineApi::OnScreenCastWarning, "OnScreenCastWarning">("OnScreenCastWarning"),
    Plain<&EngineApi::OnScreenCastError, "OnScreenCastError">("OnScreenCastError"),
    Plain<&EngineApi::OnScreenCastEnableShareAudio, "OnScreenCastEnableShareAudio">("OnScreenCastEnableShareAudio"),
    // The meeting registers this one too, earlier, for the same event; this one stands.
    Plain<&EngineApi::OnConnectionStateChanged, "ConnectionStateChanged">("OnConnectionStateChanged"),
    Plain<&EngineApi::OnScreenCaptureStartResult, "OnScreenCaptureError">("OnScreenCaptureStartResult"));
static_assert(kEvents.size() == 20);

}  // namespace

std::deque<std::int64_t>& ScreenManager::Pending(ThumbnailKind kind) {
  return kind == Kind::Desktop ? pendingDesktops_ : pendingWindows_;
}

// Sends nothing: of the request only its taskId lives on.
template <ScreenManager::ThumbnailKind kKind>
void ScreenManager::RequestThumbnails(IPCData& request) {
  const auto size = ReadRecordArgument<ThumbnailSize>(request);
  Log("[{}] {},{},taskid:{}", Texts(kKind).requestName, size.width, size.height, request.taskId);
  Pending(kKind).push_back(request.taskId);
  const auto& api = EngineApi::GetInstance();
  const auto& entry = kKind == Kind::Desktop ? api.GetDesktopThumbnailAsyn : api.GetWindowThumbnailAsyn;
  entry(size.width, size.height);
}

std::span<const EventRow> ScreenEventRows() {
  return kEvents;
}

void ScreenManager::Register() {
  RegisterAll(ScreenEventRows());
  Add(ScreenRequestRows());
  Add(*this, OwnRequests());
}

std::span<const OwnRow<ScreenManager>> ScreenManager::OwnRequests() {
  static constexpr OwnRow<ScreenManager> kRows[] = {
      {"GetDesktopThumbnail", &ScreenManager::RequestThumbnails<Kind::Desktop>},
      {"GetWindowThumbnail", &ScreenManager::RequestThumbnails<Kind::Window>},
  };
  return kRows;
}

// The reply names nothing but the task: clients pair it by that alone.
void ScreenManager::AnswerThumbnails(ThumbnailKind kind, const std::vector<ThumbnailRecord>& thumbnails) {
  auto& pending = Pending(kind);
  if (pending.empty()) {
    Log("[{}] nobody waits for thumbnails, count:{}", Texts(kind).resultName, thumbnails.size());
    return;
  }
  IPCData reply;
  reply.content = TESSARIN_COMMON::JsonText(thumbnails);
  reply.content_type = TESSARIN_COMMON::kContentJson;
  reply.message_type = TESSARIN_COMMON::kMessageCallResponse;
  reply.taskId = pending.front();
  pending.pop_front();
  RavoManager::GetInstance().SendEnvelope(reply);
}

}  // namespace TESSARIN_LUMARC
