#include "Room.h"

#include <algorithm>

#include "Callbacks.h"
#include "Frames.h"
#include "LocalMedia.h"
#include "Pulse.h"
#include "Stage.h"
#include "common/Clock.h"

namespace sim {
namespace {

constexpr std::int64_t kJoined = 1;  // kind of OnRoomStateChanged
constexpr std::int64_t kAudioAndVideo = 3;

RemoteStreamKey KeyOf(const std::string& roomId, const Participant& participant) {
  return {roomId.c_str(), participant.userId.c_str(), static_cast<std::int32_t>(participant.streamIndex)};
}

// The encoding that is wanted, as far as it is published; without a size the first.
std::int64_t IndexOf(const std::vector<Encoding>& encodings, std::int64_t width, std::int64_t height) {
  const auto found = std::ranges::find_if(
      encodings, [&](const Encoding& encoding) { return encoding.width == width && encoding.height == height; });
  return found == encodings.end() ? 0 : found - encodings.begin();
}

}  // namespace

Room& Room::Get() {
  static auto* const room = new Room;
  return *room;
}

void Room::Add(const Participant& participant) {
  const auto member = std::make_shared<Member>();
  member->participant = participant;
  if (participant.encodings.empty()) member->participant.encodings.emplace_back();
  MemberPtr old;
  std::int64_t oldPresence = 0;
  std::int64_t stay = 0;
  {
    const std::lock_guard lock(mutex_);
    old = Find(participant.Sid());
    if (old) oldPresence = old->presence;
    std::erase(members_, old);
    members_.push_back(member);
    stay = joined_ ? stay_ : 0;
  }
  if (old) Stage::Get().Now([=, this] { Exit(old, oldPresence); });
  if (stay != 0) ScheduleEnter(member, stay);
}

void Room::SetManners(const RoomManners& manners) {
  const std::lock_guard lock(mutex_);
  manners_ = manners;
}

RoomManners Room::Manners() const {
  const std::lock_guard lock(mutex_);
  return manners_;
}

void Room::RemoveUser(const std::string& userId) {
  const std::lock_guard lock(mutex_);
  for (const auto& member : members_) {
    if (member->participant.userId != userId) continue;
    Stage::Get().Now([this, member, presence = member->presence] { Exit(member, presence); });
  }
}

std::int64_t Room::Join(const std::string& roomId, const std::string& userId) {
  Leave();
  const std::int64_t startedMs = TESSARIN_COMMON::Clock::System().SteadyMs();
  const std::lock_guard lock(mutex_);
  ++stay_;
  roomId_ = roomId;
  userId_ = userId;
  if (manners_.joinNever) return 0;
  Stage::Get().After(std::chrono::milliseconds(manners_.joinDelayMs),
                     [this, stay = stay_, startedMs] { TellJoined(stay, startedMs); });
  return 0;
}

void Room::TellJoined(std::int64_t stay, std::int64_t startedMs) {
  std::vector<MemberPtr> members;
  std::string roomId;
  std::string userId;
  {
    const std::lock_guard lock(mutex_);
    if (stay != stay_) return;
    joined_ = true;
    members = members_;
    roomId = roomId_;
    userId = userId_;
  }
  const std::int64_t elapsedMs = TESSARIN_COMMON::Clock::System().SteadyMs() - startedMs;
  Emit<&OnRoomStateChanged>(roomId.c_str(), userId.c_str(), std::int64_t{0}, std::intptr_t{0}, kJoined, elapsedMs);
  for (const auto& member : members) ScheduleEnter(member, stay);
  LocalMedia::Get().OnRoomJoined(userId);
  Pulse::Get().Start();
}

void Room::ScheduleEnter(const MemberPtr& member, std::int64_t stay) {
  Stage::Get().After(std::chrono::milliseconds(member->participant.joinAfterMs), [=, this] { Enter(member, stay); });
}

void Room::Enter(const MemberPtr& member, std::int64_t stay) {
  const Participant& participant = member->participant;
  std::string roomId;
  bool isKnownUser = false;
  std::int64_t presence = 0;
  {
    const std::lock_guard lock(mutex_);
    const bool listed = std::ranges::find(members_, member) != members_.end();
    if (stay != stay_ || member->present || !listed) return;
    isKnownUser = IsUserPresent(participant.userId);
    member->present = true;
    presence = ++member->presence;
    roomId = roomId_;
  }
  const RemoteStreamKey key = KeyOf(roomId, participant);
  if (!isKnownUser) Emit<&OnUserJoin>(participant.userId.c_str(), std::int64_t{0});
  Emit<&OnUserPublishStream>(&key, std::int64_t{0}, kAudioAndVideo);
  EmitStreamAdded(participant.userId, participant.Sid(), participant.streamIndex, participant.encodings);
  if (participant.leaveAfterMs < 0) return;
  Stage::Get().After(std::chrono::milliseconds(participant.leaveAfterMs), [=, this] { Exit(member, presence); });
}

void Room::Exit(const MemberPtr& member, std::int64_t presence) {
  const Participant& participant = member->participant;
  std::string roomId;
  std::shared_ptr<MediaStream> stream;
  bool isUserStillHere = false;
  {
    const std::lock_guard lock(mutex_);
    if (!member->present || member->presence != presence) return;
    member->present = false;
    stream = std::move(member->stream);
    isUserStillHere = IsUserPresent(participant.userId);
    roomId = roomId_;
  }
  if (stream) stream->Stop();
  const RemoteStreamKey key = KeyOf(roomId, participant);
  Emit<&OnMultiStreamRemoved>(participant.userId.c_str(), participant.Sid().c_str(), participant.streamIndex);
  Emit<&OnUserUnpublishStream>(&key, kAudioAndVideo);
  if (!isUserStillHere) Emit<&OnUserLeave>(participant.userId.c_str(), std::int64_t{0});
}

// The streams end here; that they are gone is told on the stage's thread, before the news of a coming stay.
std::int64_t Room::Leave() {
  {
    const std::lock_guard lock(mutex_);
    ++stay_;
    joined_ = false;
    for (const auto& member : members_) {
      if (member->stream) member->stream->Stop();
      member->stream.reset();
      if (!member->present) continue;
      member->present = false;
      Stage::Get().Now([member] {
        const Participant& gone = member->participant;
        Emit<&OnMultiStreamRemoved>(gone.userId.c_str(), gone.Sid().c_str(), gone.streamIndex);
      });
    }
  }
  LocalMedia::Get().OnRoomLeft();
  return 0;
}

std::int64_t Room::Subscribe(std::string_view sid, bool video, std::int64_t width, std::int64_t height,
                             std::int64_t frameRate) {
  const std::lock_guard lock(mutex_);
  const MemberPtr member = Find(sid);
  if (!member || !member->present) return -1;
  const auto& encodings = member->participant.encodings;
  Wish wish{video, {}, IndexOf(encodings, width, height)};
  wish.encoding = encodings[static_cast<std::size_t>(wish.index)];
  if (width > 0 && height > 0) {
    wish.encoding.width = width;
    wish.encoding.height = height;
  }
  if (frameRate > 0) wish.encoding.frameRate = frameRate;
  if (!wish.encoding.IsUsable()) return -1;
  if (!video && member->stream) {
    member->stream->Stop();
    member->stream.reset();
  }
  if (member->participant.subscribeNever) return 0;
  Stage::Get().After(std::chrono::milliseconds(manners_.subscribeDelayMs),
                     [this, member, presence = member->presence, wish] { TellSubscribed(member, presence, wish); });
  return 0;
}

void Room::TellSubscribed(const MemberPtr& member, std::int64_t presence, const Wish& wish) {
  const Participant& participant = member->participant;
  {
    const std::lock_guard lock(mutex_);
    if (!member->present || member->presence != presence) return;
  }
  const SubscribeInfo info{wish.video, true, static_cast<std::uint64_t>(wish.index), 0};
  Emit<&OnStreamSubscribed>(participant.subscribeState, participant.Sid().c_str(), &info);
  if (participant.subscribeState != 0) return;
  if (!participant.IsScreen()) Emit<&OnFirstRemoteAudioFrame>(participant.userId.c_str(), std::int64_t{0});
  if (wish.video) StartMedia(member, wish);
}

void Room::StartMedia(const MemberPtr& member, const Wish& wish) {
  const std::lock_guard lock(mutex_);
  if (!member->present) return;
  if (member->stream) return member->stream->Retune(wish.encoding);
  member->stream = MediaStream::Start(
      member->participant.Plan(), wish.encoding,
      [this, member, presence = member->presence, roomId = roomId_](const Picture& picture, const FrameFacts& facts) {
        OnFrame(member, presence, roomId, picture, facts);
      });
}

void Room::OnFrame(const MemberPtr& member, std::int64_t presence, const std::string& roomId, const Picture& picture,
                   const FrameFacts& facts) {
  const Participant& participant = member->participant;
  const VideoFrameInfo info = FrameInfoOf(picture, facts, participant.IsScreen());
  const RemoteStreamKey key = KeyOf(roomId, participant);
  if (facts.number == 0) Emit<&OnFirstRemoteVideoFrameDecoded>(&key, info);
  if (facts.sizeChanged) Emit<&OnRemoteVideoSizeChanged>(&key, info);
  if (facts.number == participant.leaveAfterFrames) {
    Stage::Get().Now([=, this] { Exit(member, presence); });
  }
  EmitFrame(participant.userId, picture, info);
  EmitFrameSign(participant.userId, participant.IsScreen());
}

std::int64_t Room::Unsubscribe(std::string_view sid) {
  const std::lock_guard lock(mutex_);
  const MemberPtr member = Find(sid);
  if (!member) return -1;
  if (member->stream) member->stream->Stop();
  member->stream.reset();
  return 0;
}

Company Room::Present() const {
  const std::lock_guard lock(mutex_);
  if (!joined_) return {};
  Company company{userId_, {}};
  for (const auto& member : members_) {
    const std::string& user = member->participant.userId;
    const bool known = std::ranges::find(company.others, user) != company.others.end();
    if (member->present && !known) company.others.push_back(user);
  }
  return company;
}

Room::MemberPtr Room::Find(std::string_view sid) const {
  const auto found =
      std::ranges::find_if(members_, [&](const auto& member) { return member->participant.Sid() == sid; });
  return found == members_.end() ? nullptr : *found;
}

bool Room::IsUserPresent(const std::string& userId) const {
  return std::ranges::any_of(
      members_, [&](const auto& member) { return member->present && member->participant.userId == userId; });
}

}  // namespace sim
