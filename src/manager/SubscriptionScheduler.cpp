#include "SubscriptionScheduler.h"

#include <algorithm>
#include <utility>

#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_LOG::Log;

bool Contains(const std::vector<std::string>& list, const std::string& sid) {
  return std::find(list.begin(), list.end(), sid) != list.end();
}

template <class Rows, class Take>
auto Collect(const Rows& rows, Take take) {
  std::vector<decltype(take(*rows.begin()))> list;
  for (const auto& row : rows) list.push_back(take(row));
  return list;
}

}  // namespace

void SubscriptionScheduler::ApplyOptions(std::int64_t subscribeMaxNumber, std::int64_t subscribeDebounceTime) {
  subscribeMaxNumber_ = static_cast<std::uint64_t>(subscribeMaxNumber);
  if (subscribeDebounceTime != 0) subscribeDebounceTime_ = static_cast<std::uint64_t>(subscribeDebounceTime);
}

void SubscriptionScheduler::subscribe_video(const std::string& sid, std::uint64_t index, const std::string& client_id,
                                            std::uint64_t layer) {
  Log("subscribe_video sid:{}, index:{}, client_id:{}, layer:{}", sid, index, client_id, layer);
  if (output_.IsSelfStream(sid)) {
    Log("don't subscirbe self stream sid");
    return;
  }
  SubscribeStream& stream = streams_[sid];
  stream.clients[client_id] = {sid, index, layer};
  SubscribeUnlessCovered(MergeWishes(stream));
}

void SubscriptionScheduler::subscribe_audio_only(const std::string& sid, const std::string& client_id) {
  Log("[subscribe_audio_only] sid:{}, client_id:{}", sid, client_id);
  SubscribeStream* const stream = streams_.Find(sid);
  if (stream == nullptr) return;
  stream->clients.Erase(client_id);
  if (stream->clients.Size() == 0) return real_subscribe(sid, false, 0, 0);
  SubscribeUnlessCovered(MergeWishes(*stream));
}

// The largest picture wins; of two equal ones, the view that came first. A wish beyond the resolutions counts for
// nothing, and without one that counts the item has no sid.
SubscribeItem SubscriptionScheduler::MergeWishes(const SubscribeStream& stream) const {
  for (const auto& resolution : stream.resolutions) Log("res:{},{}", resolution.width, resolution.height);
  SubscribeItem best;
  std::int64_t bestArea = -1;
  for (const auto& [client, item] : stream.clients) {
    Log("[map]client:{}, index:{}, layer:{}", client, item.index, item.layer);
    if (item.index >= stream.resolutions.size()) continue;
    const auto& resolution = stream.resolutions[static_cast<std::size_t>(item.index)];
    const auto area = static_cast<std::int64_t>(resolution.width * resolution.height);
    if (area <= bestArea) continue;
    bestArea = area;
    best = item;
  }
  return best;
}

// A stream that is asked for or subscribed counts as covered whatever its encoding: a later wish for a larger one is
// kept and changes nothing.
bool SubscriptionScheduler::AlreadyCovered(const SubscribeItem& item) const {
  if (Contains(unSubscribing_, item.sid)) return false;
  return std::find(waitingSubscribe_.begin(), waitingSubscribe_.end(), item) != waitingSubscribe_.end() ||
         subscribing_.Contains(item.sid) || subscribed_.Contains(item.sid);
}

void SubscriptionScheduler::SubscribeUnlessCovered(const SubscribeItem& item) {
  if (!AlreadyCovered(item)) real_subscribe(item.sid, true, item.index, item.layer);
}

void SubscriptionScheduler::real_subscribe(const std::string& sid, bool sub_video, std::uint64_t index,
                                           std::uint64_t layer) {
  Log("[sub logic]real_subscribe sid:{}, index:{}, sub_video:{}, layer:{}", sid, index, sub_video, layer);
  const SubscribeStream* const stream = streams_.Find(sid);
  if (stream == nullptr) {
    Log("[sub logic] stop sub video. stream id has remove sid: {}", sid);
    return RemoveStreamAll(sid);
  }
  const SubscribeItem item{sid, index, layer};
  if (sub_video) {
    subscribing_[sid] = item;
  } else {
    // Only what is in the list is added to it, so it stays empty. Wanted: clients count on an empty "unSubscribing".
    if (Contains(unSubscribing_, sid)) unSubscribing_.push_back(sid);
    waitingSubscribe_.remove(item);
  }
  if (!Contains(audioSubscribing_, sid)) audioSubscribing_.push_back(sid);
  output_.SubStarted(sid, sub_video, index);
  AskEngine(*stream, item, sub_video);
}

// An index beyond the resolutions goes to the engine all the same, with zeroes.
void SubscriptionScheduler::AskEngine(const SubscribeStream& stream, const SubscribeItem& item, bool sub_video) {
  slots::StreamResolution encoding{};
  if (item.index < stream.resolutions.size()) encoding = stream.resolutions[static_cast<std::size_t>(item.index)];
  Log("[sub logic] vemora SubscribeVideo, sid:{}, index:{}, sub_video:{}, layer:{}, framerate:{}, width:{}, height:{}",
      item.sid, item.index, sub_video, item.layer, encoding.frameRate, encoding.width, encoding.height);
  if (!sub_video) output_.UnsubscribeVideo(item.sid);
  output_.Subscribe(item.sid, sub_video, static_cast<std::int32_t>(encoding.frameRate),
                    static_cast<std::int32_t>(encoding.width), static_cast<std::int32_t>(encoding.height));
}

void SubscriptionScheduler::OnStreamSubscribedTask(std::int64_t state, const std::string& sid, bool subscribeVideo,
                                                   bool subscribeAudio, std::uint64_t videoIndex, std::uint64_t layer) {
  Log("sid:{}, state:{}, index:{}, bAudio:{}, bVideo:{}", sid, state, videoIndex, subscribeAudio, subscribeVideo);
  const SubscribeItem item{sid, videoIndex, layer};
  // A failed subscription stays in `subscribing`, which holds off every retry until the stream is removed.
  if (state == 0 && subscribeVideo) {
    subscribed_[sid] = item;
    subscribing_.Erase(sid);
  } else if (state == 0) {
    subscribed_.Erase(sid);
    subscribing_.Erase(sid);
    LeaveUnSubscribing(sid);
    waitingSubscribe_.remove(item);
  }
  next_subscribe();
}

// One item a call, oldest first; one more than the maximum may be under way.
void SubscriptionScheduler::next_subscribe() {
  Log("next_subscribe subed:{},subing:{},max:{},waiting:{}", subscribed_.Size(), subscribing_.Size(),
      subscribeMaxNumber_, waitingSubscribe_.size());
  if (subscribed_.Size() + subscribing_.Size() > subscribeMaxNumber_ || waitingSubscribe_.empty()) return;
  const SubscribeItem item = std::move(waitingSubscribe_.front());
  waitingSubscribe_.pop_front();
  real_subscribe(item.sid, true, item.index, item.layer);
}

// Subscribes nothing, even where a wish came first.
void SubscriptionScheduler::SetStreamResolutions(const std::string& sid,
                                                 std::vector<slots::StreamResolution> resolutions) {
  streams_[sid].resolutions = std::move(resolutions);
}

void SubscriptionScheduler::RemoveStreamAll(const std::string& sid) {
  waitingSubscribe_.remove_if([&](const SubscribeItem& item) { return item.sid == sid; });
  LeaveUnSubscribing(sid);
  std::erase(audioSubscribing_, sid);
  subscribing_.Erase(sid);
  subscribed_.Erase(sid);
  streams_.Erase(sid);
}

void SubscriptionScheduler::LeaveUnSubscribing(const std::string& sid) {
  std::erase(unSubscribing_, sid);
}

SubscribeStatus SubscriptionScheduler::GetStatus() const {
  const auto key = [](const auto& row) { return row.first; };
  return {.maxSubscribingNumber = subscribeMaxNumber_,
          .subscribing = Collect(subscribing_, key),
          .unSubscribing = unSubscribing_,
          .subscribed = Collect(subscribed_, key),
          .waitingSubscribe = Collect(waitingSubscribe_, [](const SubscribeItem& item) { return item.sid; }),
          .audioSubscribing = audioSubscribing_,
          .subscribedInfo = Collect(subscribed_, [](const auto& row) { return row.second; })};
}

}  // namespace TESSARIN_LUMARC
