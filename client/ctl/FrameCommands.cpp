#include <fmt/format.h>

#include <optional>

#include "Commands.h"
#include "Files.h"
#include "Meeting.h"
#include "Output.h"
#include "common/JsonWriter.h"
#include "reader/Y4mWriter.h"

namespace ravo::ctl {
namespace {

// The slots that the server has now, for a client that hears of none being made.
void RequireSlot(Context& context, const std::string& sid) {
  if (!context.slots.Refresh(context.line.Timeout())) throw std::runtime_error("the server does not tell its slots");
  std::string known;
  for (const auto& slot : context.slots.Slots()) {
    if (slot.sid == sid) return;
    known += " " + slot.sid;
  }
  throw std::runtime_error(
      fmt::format("the stream {} has no slot; those that have:{}", sid, known.empty() ? " none" : known));
}

MeetingStream WaitStream(Context& context, Meeting& meeting, const std::string& sid) {
  const auto end = Meeting::Clock::now() + context.line.Timeout();
  std::string others;
  while (const auto stream = meeting.NextStream(end)) {
    if (stream->sid == sid) return *stream;
    others += " " + stream->sid;
  }
  throw std::runtime_error(fmt::format("the stream {} is not in {}; those that are:{}", sid, meeting.Room(),
                                       others.empty() ? " none" : others));
}

// The frames of the stream that the first word names: from the slot that it has, or, with --join, from the one that
// its subscription in a meeting brings.
class Source {
 public:
  explicit Source(Context& context);

  void Read(client::Frame& frame);
  // Ends the visit to the meeting, if there is one.
  void Close();

 private:
  Context& context_;
  const std::string& sid_;
  std::optional<Meeting> meeting_;
};

Source::Source(Context& context) : context_(context), sid_(context.Word(0)) {
  if (!context.line.Has("--join")) {
    RequireSlot(context, sid_);
    return;
  }
  meeting_.emplace(context, context.line.Value("--join"), context.line.Value("--as", "ravoctl"));
  meeting_->Subscribe(WaitStream(context, *meeting_, sid_));
}

void Source::Read(client::Frame& frame) {
  if (context_.slots.Read(sid_, frame, context_.line.Timeout()) == client::FrameReader::Outcome::Frame) return;
  throw std::runtime_error(fmt::format("no frame of {} within {} s", sid_, context_.line.Timeout().count()));
}

void Source::Close() {
  if (meeting_) meeting_->Leave();
}

}  // namespace

void CheckFrames(const CommandLine& line) {
  if (line.Has("--as") && !line.Has("--join")) throw UsageError("--as goes with --join");
  (void)line.Number("--frames", 100, 1);
}

int RunSnapshot(Context& context) {
  Source source(context);
  client::Frame frame;
  source.Read(frame);
  source.Close();
  WritePng(context.Word(1), frame);
  if (context.line.Json()) {
    PrintLine(fmt::format("{{\"file\":{},\"width\":{},\"height\":{}}}", TESSARIN_COMMON::JsonText(context.Word(1)),
                          frame.width, frame.height));
  } else {
    fmt::print("{}: {}x{}\n", context.Word(1), frame.width, frame.height);
  }
  return 0;
}

int RunRecord(Context& context) {
  const int frames = context.line.Number("--frames", 100, 1);
  Source source(context);
  client::Y4mWriter writer(PathFromUtf8(context.Word(1)));
  client::Frame frame;
  for (int written = 0; written < frames; ++written) {
    source.Read(frame);
    if (!writer.Write(frame)) {
      throw std::runtime_error(
          fmt::format("cannot write frame {} of {}x{} to {}", written, frame.width, frame.height, context.Word(1)));
    }
  }
  source.Close();
  if (context.line.Json()) {
    PrintLine(fmt::format("{{\"file\":{},\"frames\":{}}}", TESSARIN_COMMON::JsonText(context.Word(1)), frames));
  } else {
    fmt::print("{}: {} frames\n", context.Word(1), frames);
  }
  return 0;
}

}  // namespace ravo::ctl
