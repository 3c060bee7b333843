#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "Commands.h"

namespace ravo::ctl {

// A stream as its announcement tells it.
struct MeetingStream {
  std::string sid;
  std::string uid;
  bool isScreen = false;
  std::size_t largest = 0;  // the index of the encoding with the most pixels
};

// The pieces that a visit is made of.
void RequestJoin(const Context& context, const std::string& room, const std::string& user);
[[nodiscard]] MeetingStream StreamOf(const client::Event& streamAdded);
// Asks for the video of the stream's largest encoding. A slot follows with the first frame.
void RequestVideo(const Context& context, const MeetingStream& stream);

// One visit of a command to a meeting. Belongs to the command's thread. What does not succeed within --timeout is a
// std::runtime_error; the end of the program is then the end of the visit, too.
class Meeting {
 public:
  using Clock = std::chrono::steady_clock;

  // Joins. To be made once in a session, which has taken no event yet.
  Meeting(const Context& context, std::string room, std::string user);

  // The next stream of somebody else that turns up; nothing when the time has come.
  [[nodiscard]] std::optional<MeetingStream> NextStream(Clock::time_point end);
  void Subscribe(const MeetingStream& stream) const { RequestVideo(context_, stream); }
  // Nobody may be reading frames any more.
  void Leave() const;

  [[nodiscard]] const std::string& Room() const { return room_; }
  [[nodiscard]] const std::string& User() const { return user_; }

 private:
  void Expect(const char* event) const;

  const Context& context_;
  const std::string room_;
  const std::string user_;
};

}  // namespace ravo::ctl
