#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "Participant.h"

namespace sim {

// A source of the user's own: what it captures.
struct LocalSource {
  std::string video;  // Y4M file; empty for the test pattern
  Encoding encoding;
};

// What the user sends himself: whether he is heard, and his pictures, which are the preview, whose frames have no user
// id, and in a room the published camera and screen. A source that is switched on outside of a room is published when
// the room is joined. Entries come on Ravo's thread, the room's news on the stage's.
class LocalMedia {
 public:
  static LocalMedia& Get();

  void SetCamera(const LocalSource& source);
  [[nodiscard]] LocalSource Camera() const;
  void SetScreen(const LocalSource& source);
  [[nodiscard]] LocalSource Screen() const;

  void SetPreview(bool on);
  void EnableAudio(bool on);
  [[nodiscard]] bool IsAudioEnabled() const { return audio_; }
  void EnableVideo(bool on);
  [[nodiscard]] bool IsVideoEnabled() const;
  void PublishScreen(bool on);

  void OnRoomJoined(const std::string& userId);
  void OnRoomLeft();

 private:
  struct Published {
    LocalSource source;
    bool wanted = false;
    std::string userId;  // of the running stream
    std::shared_ptr<MediaStream> stream;
  };

  LocalMedia();
  // Makes what runs agree with what is wanted.
  void Settle(std::int64_t streamIndex);
  void Publish(std::int64_t streamIndex, const std::string& userId, const LocalSource& source);
  static void Unpublish(std::int64_t streamIndex, const std::string& userId);

  std::atomic<bool> audio_{false};
  mutable std::mutex mutex_;
  // Guarded by mutex_.
  Published published_[2];  // camera and screen, by stream index
  std::shared_ptr<MediaStream> preview_;
  std::string userId_;  // own id while in a room
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::LocalSource> = Fields(Field{"video", &sim::LocalSource::video},
                                                         Field{"encoding", &sim::LocalSource::encoding});

}  // namespace TESSARIN_COMMON
