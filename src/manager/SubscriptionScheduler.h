#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "InsertionMap.h"
#include "common/Fields.h"
#include "slots/StreamTypes.h"

namespace TESSARIN_LUMARC {

// One wish, or one subscription.
struct SubscribeItem {
  std::string sid;
  std::uint64_t index = 0;  // into the stream's resolutions
  std::uint64_t layer = 0;  // logged and kept; the engine is not told

  bool operator==(const SubscribeItem&) const = default;
};

// What is known of one stream.
struct SubscribeStream {
  InsertionMap<SubscribeItem> clients;  // by client id
  std::vector<slots::StreamResolution> resolutions;
};

// A snapshot of the scheduler, as the client gets it.
struct SubscribeStatus {
  std::uint64_t maxSubscribingNumber = 0;
  std::vector<std::string> subscribing;
  std::vector<std::string> unSubscribing;
  std::vector<std::string> subscribed;
  std::vector<std::string> waitingSubscribe;
  std::vector<std::string> audioSubscribing;
  std::vector<SubscribeItem> subscribedInfo;
};

// What the scheduler asks of the engine, the stream table and the client.
class ISubscribeOutput {
 public:
  virtual ~ISubscribeOutput() = default;
  // Video and audio, or audio alone, at the given encoding.
  virtual void Subscribe(const std::string& sid, bool video, std::int32_t frameRate, std::int32_t width,
                         std::int32_t height) = 0;
  virtual void UnsubscribeVideo(const std::string& sid) = 0;
  // Tells the client that a subscription has been asked for.
  virtual void SubStarted(const std::string& sid, bool video, std::uint64_t index) = 0;
  [[nodiscard]] virtual bool IsSelfStream(const std::string& sid) = 0;
};

// Merges the wishes of many views into the one subscription that the engine can hold for a stream, and keeps track of
// the phase each stream is in. It outlives meetings: its tables empty through the engine's removals alone.
// "main_thread" alone touches it, so it has no lock. Nothing here fails: the engine's verdict comes back as the state
// of OnStreamSubscribedTask.
class SubscriptionScheduler {
 public:
  // `output` is not owned and outlives the scheduler.
  explicit SubscriptionScheduler(ISubscribeOutput& output) : output_(output) {}

  // The start-up values: the number always, the time only if it is not 0.
  void ApplyOptions(std::int64_t subscribeMaxNumber, std::int64_t subscribeDebounceTime);
  void SetMaxNumber(std::uint64_t number) { subscribeMaxNumber_ = number; }

  // A view wishes for a stream at an encoding, and no longer wishes for its video.
  void subscribe_video(const std::string& sid, std::uint64_t index, const std::string& client_id, std::uint64_t layer);
  void subscribe_audio_only(const std::string& sid, const std::string& client_id);

  void OnStreamSubscribedTask(std::int64_t state, const std::string& sid, bool subscribeVideo, bool subscribeAudio,
                              std::uint64_t videoIndex, std::uint64_t layer);
  void SetStreamResolutions(const std::string& sid, std::vector<slots::StreamResolution> resolutions);
  void RemoveStreamAll(const std::string& sid);

  [[nodiscard]] SubscribeStatus GetStatus() const;

 private:
  [[nodiscard]] SubscribeItem MergeWishes(const SubscribeStream& stream) const;
  [[nodiscard]] bool AlreadyCovered(const SubscribeItem& item) const;
  void SubscribeUnlessCovered(const SubscribeItem& item);
  void real_subscribe(const std::string& sid, bool sub_video, std::uint64_t index, std::uint64_t layer);
  void AskEngine(const SubscribeStream& stream, const SubscribeItem& item, bool sub_video);
  void next_subscribe();
  void LeaveUnSubscribing(const std::string& sid);

  ISubscribeOutput& output_;
  std::uint64_t subscribeMaxNumber_ = 0;
  std::uint64_t subscribeDebounceTime_ = 0;  // kept; no debounce runs
  InsertionMap<SubscribeStream> streams_;
  InsertionMap<SubscribeItem> subscribed_;   // confirmed by the engine
  InsertionMap<SubscribeItem> subscribing_;  // asked of the engine and not answered
  // Wishes go straight to the engine, so nothing ever waits here, and the maximum throttles nothing. Reported, drained
  // and pruned all the same: clients read it in the status.
  std::list<SubscribeItem> waitingSubscribe_;
  std::vector<std::string> unSubscribing_;  // stays empty, see real_subscribe
  std::vector<std::string> audioSubscribing_;
};

}  // namespace TESSARIN_LUMARC

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::SubscribeItem> =
    Fields(Field{"sid", &TESSARIN_LUMARC::SubscribeItem::sid}, Field{"index", &TESSARIN_LUMARC::SubscribeItem::index},
           Field{"layer", &TESSARIN_LUMARC::SubscribeItem::layer});

template <>
inline constexpr auto kFields<TESSARIN_LUMARC::SubscribeStatus> =
    Fields(Field{"maxSubscribingNumber", &TESSARIN_LUMARC::SubscribeStatus::maxSubscribingNumber},
           Field{"subscribing", &TESSARIN_LUMARC::SubscribeStatus::subscribing},
           Field{"unSubscribing", &TESSARIN_LUMARC::SubscribeStatus::unSubscribing},
           Field{"subscribed", &TESSARIN_LUMARC::SubscribeStatus::subscribed},
           Field{"waitingSubscribe", &TESSARIN_LUMARC::SubscribeStatus::waitingSubscribe},
           Field{"audioSubscribing", &TESSARIN_LUMARC::SubscribeStatus::audioSubscribing},
           Field{"subscribedInfo", &TESSARIN_LUMARC::SubscribeStatus::subscribedInfo});

}  // namespace TESSARIN_COMMON
