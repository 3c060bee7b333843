#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Participant.h"

namespace sim {

// How a join goes.
struct RoomManners {
  std::int64_t joinDelayMs = 20;
  bool joinNever = false;  // the join is not answered
  std::int64_t subscribeDelayMs = 5;
};

// Who is in the room; all empty outside of one.
struct Company {
  std::string self;
  std::vector<std::string> others;
};

// The meeting and the other users in it. The entries come on Ravo's thread, the news go out on the stage's thread and
// on those of the streams, always with no lock held. What was promised for one stay in the room is dropped with it:
// each stay has its number.
class Room {
 public:
  static Room& Get();

  // Takes a participant, or another form of one who is known by user and stream index; he comes at once if the room
  // has been joined.
  void Add(const Participant& participant);
  void SetManners(const RoomManners& manners);
  [[nodiscard]] RoomManners Manners() const;
  // All streams of a user leave.
  void RemoveUser(const std::string& userId);

  // The entries.
  std::int64_t Join(const std::string& roomId, const std::string& userId);
  std::int64_t Leave();
  std::int64_t Subscribe(std::string_view sid, bool video, std::int64_t width, std::int64_t height,
                         std::int64_t frameRate);
  std::int64_t Unsubscribe(std::string_view sid);

  [[nodiscard]] Company Present() const;

 private:
  struct Member {
    Participant participant;
    bool present = false;
    std::int64_t presence = 0;  // counts his comings
    std::shared_ptr<MediaStream> stream;
  };
  using MemberPtr = std::shared_ptr<Member>;
  struct Wish {
    bool video = false;
    Encoding encoding;
    std::int64_t index = 0;
  };

  Room() = default;
  void TellJoined(std::int64_t stay, std::int64_t startedMs);
  void ScheduleEnter(const MemberPtr& member, std::int64_t stay);
  void Enter(const MemberPtr& member, std::int64_t stay);
  void Exit(const MemberPtr& member, std::int64_t presence);
  void TellSubscribed(const MemberPtr& member, std::int64_t presence, const Wish& wish);
  void StartMedia(const MemberPtr& member, const Wish& wish);
  void OnFrame(const MemberPtr& member, std::int64_t presence, const std::string& roomId, const Picture& picture,
               const FrameFacts& facts);
  [[nodiscard]] MemberPtr Find(std::string_view sid) const;
  [[nodiscard]] bool IsUserPresent(const std::string& userId) const;

  mutable std::mutex mutex_;
  // Guarded by mutex_, as are the members' fields; a member's participant is fixed once he is in the list.
  std::vector<MemberPtr> members_;
  RoomManners manners_;
  std::int64_t stay_ = 0;  // number of the stay, counted by joins and leaves
  bool joined_ = false;
  std::string roomId_;
  std::string userId_;
};

}  // namespace sim

namespace TESSARIN_COMMON {

template <>
inline constexpr auto kFields<sim::RoomManners> = Fields(Field{"joinDelayMs", &sim::RoomManners::joinDelayMs},
                                                         Field{"joinNever", &sim::RoomManners::joinNever},
                                                         Field{"subscribeDelayMs",
                                                               &sim::RoomManners::subscribeDelayMs});

}  // namespace TESSARIN_COMMON
