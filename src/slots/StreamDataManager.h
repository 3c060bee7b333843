#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "StreamTypes.h"
#include "common/Fnv1a.h"
#include "common/Singleton.h"

namespace TESSARIN_LUMARC::slots {

inline constexpr std::string_view kScreenSuffix = "_screen_suffix";

// The table of all streams that the server knows: remote ones, the local preview and the user's own. Frames are
// resolved to streams here, twice a frame at most. Engine threads and "main_thread" call; one mutex guards all, is
// held for map work alone and never while something outside is called, the logger apart. Nothing fails by throwing.
class StreamDataManager : public TESSARIN_COMMON::Singleton<StreamDataManager> {
 public:
  StreamDataManager() = default;

  // Adds a stream or overwrites the one with this sid. The uid may come with or without the screen suffix.
  void UpdateStream(const StreamInfo& info);
  void RemoveStream(std::string_view sid);

  // The user's own id in the meeting; the own camera stream is recognised by it when it is updated.
  void AddSelfUid(const std::string& uid);
  void RemoveSelfUidSid();
  // Whether the local user shows video; true at first.
  void SetSelfStreamHasVideo(bool has);
  [[nodiscard]] bool GetSelfStreamHasVideo() const;

  // By key: the uid, for a screen with the suffix. `out.uid` is that key. False, `out` untouched, if unknown.
  bool GetStreamByUid(std::string_view uidKey, StreamInfo& out) const;
  // `out.uid` is the plain user id. False, `out` untouched, if unknown.
  bool GetStreamBySid(std::string_view sid, StreamInfo& out) const;
  // The record that announces the removal of a stream's slot, sizes and path empty; no element for an unknown sid.
  [[nodiscard]] std::vector<ShareMemoryInfo> GetShareMemoryInfoBySid(std::string_view sid) const;

  // The local preview is a stream with an empty uid and a sid of its own each time. Removing it keeps the sid.
  void AddPreviewStream();
  void RemovePreviewStream();

  [[nodiscard]] std::string GetPreviewSid() const;
  [[nodiscard]] std::string GetSelfUid() const;
  [[nodiscard]] std::string GetSelfSid() const;

  // Empties the table and forgets the own uid and sid; the preview's sid and the own video flag stay.
  void ClearAllStreams();

 private:
  // Not recursive: nothing that holds it calls back into the public part.
  mutable std::mutex mutex_;
  TESSARIN_COMMON::StringMap<StreamInfo> streamsBySid_;
  TESSARIN_COMMON::StringMap<std::string> sidByUidKey_;
  std::string previewSid_;
  std::string m_SelfUid_;
  std::string m_SelfSid_;
  bool selfHasVideo_ = true;
};

// The user id without any screen suffix, and the key made of it.
[[nodiscard]] std::string PlainUid(std::string uid);
[[nodiscard]] std::string UidKey(std::string uid, bool isScreen);

}  // namespace TESSARIN_LUMARC::slots
