#include "Meeting.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "common/JsonNode.h"
#include "common/JsonWriter.h"

namespace ravo::ctl {
namespace {

using TESSARIN_COMMON::JsonNode;
using TESSARIN_COMMON::JsonWriter;

constexpr char kClientId[] = "ravoctl";

std::size_t LargestOf(JsonNode& encodings) {
  std::size_t largest = 0;
  std::int64_t most = 0;
  for (std::size_t i = 0; i < encodings.Size(); ++i) {
    std::int64_t width = 0;
    std::int64_t height = 0;
    encodings[i].Get("width", width);
    encodings[i].Get("height", height);
    if (width * height > most) largest = i;
    most = std::max(most, width * height);
  }
  return largest;
}

}  // namespace

// The event's arguments: user, stream, whether it is a screen, encodings.
MeetingStream StreamOf(const client::Event& streamAdded) {
  JsonNode arguments(streamAdded.content);
  MeetingStream stream;
  arguments[0].Get("", stream.uid);
  arguments[1].Get("", stream.sid);
  arguments[2].Get("", stream.isScreen);
  stream.largest = LargestOf(arguments[3]);
  return stream;
}

void RequestJoin(const Context& context, const std::string& room, const std::string& user) {
  JsonWriter arguments;
  arguments.StartArray();
  for (const std::string& text : {std::string("token"), room, user, std::string()}) arguments.Add(nullptr, text);
  arguments.EndArray();
  const std::string result = context.Call("JoinMeeting", arguments.Text());
  if (result.starts_with('-')) throw std::runtime_error("JoinMeeting: the engine refuses with " + result);
}

void RequestVideo(const Context& context, const MeetingStream& stream) {
  JsonWriter arguments;
  arguments.StartArray();
  arguments.Add(nullptr, stream.sid);
  arguments.Add(nullptr, static_cast<std::uint64_t>(stream.largest));
  arguments.Add(nullptr, std::int32_t{0});
  arguments.StartObject();
  arguments.Add("subscribeClientId", kClientId);
  arguments.EndObject();
  arguments.EndArray();
  context.Call("SubscribeVideo", arguments.Text());
}

Meeting::Meeting(const Context& context, std::string room, std::string user)
    : context_(context), room_(std::move(room)), user_(std::move(user)) {
  Expect("connect");
  Expect("INIT");
  RequestJoin(context_, room_, user_);
  Expect("JOIN_CHANNEL_SUCCESS");
}

void Meeting::Expect(const char* event) const {
  if (context_.session.WaitEvent(event, context_.line.Timeout())) return;
  throw std::runtime_error(
      fmt::format("the event {} has not come within {} s", event, context_.line.Timeout().count()));
}

std::optional<MeetingStream> Meeting::NextStream(Clock::time_point end) {
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    const auto event =
        context_.session.WaitEvent("STREAM_ADDED", std::chrono::ceil<std::chrono::milliseconds>(end - now));
    if (event) {
      MeetingStream stream = StreamOf(*event);
      if (stream.uid != user_) return stream;  // nobody subscribes to what is his own
    } else if (context_.session.WaitClosed(std::chrono::milliseconds(0))) {
      throw std::runtime_error("the server has ended the session");
    }
  }
  return std::nullopt;
}

void Meeting::Leave() const {
  context_.Call("LeaveMeeting");
  Expect("LEAVE_MEETING_SUCCESS");
}

}  // namespace ravo::ctl
