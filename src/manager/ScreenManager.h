#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "Requests.h"
#include "records/ScreenRecords.h"

namespace TESSARIN_LUMARC {

// Carries the client's screen-sharing commands to the engine. A thumbnail is answered later, from a callback, in the
// order of the requests of its kind. "main_thread" alone touches the object; the engine's callbacks copy and post.
class ScreenManager : public RequestManager {
 public:
  enum class ThumbnailKind { Desktop, Window };

  // Gives the engine its callbacks, then fills the map. The init task, once.
  void Register();
  [[nodiscard]] static std::span<const OwnRow<ScreenManager>> OwnRequests();

  // Answers the oldest request of the kind.
  void AnswerThumbnails(ThumbnailKind kind, const std::vector<ThumbnailRecord>& thumbnails);

 private:
  template <ThumbnailKind kKind>
  void RequestThumbnails(IPCData& request);
  [[nodiscard]] std::deque<std::int64_t>& Pending(ThumbnailKind kind);

  std::deque<std::int64_t> pendingDesktops_;  // taskIds, oldest first
  std::deque<std::int64_t> pendingWindows_;
};

}  // namespace TESSARIN_LUMARC
