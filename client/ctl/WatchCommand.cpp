#include <chrono>

#include "Commands.h"
#include "Meeting.h"
#include "Output.h"

namespace ravo::ctl {
namespace {

using Clock = Meeting::Clock;

// Prints what comes; with --join as somebody in the meeting, who subscribes to what the others send.
class Watch {
 public:
  explicit Watch(Context& context)
      : context_(context),
        printer_(context.line),
        user_(context.line.Has("--join") ? context.line.Value("--as", "ravoctl") : ""),
        subscribes_(context.line.Value("--subscribe", "all") == "all") {}

  void Run();

 private:
  // Until the key has come or the time is over; false if the session has ended.
  bool PrintUntil(const std::string& key, Clock::time_point end);
  void Take(const client::Event& event);

  Context& context_;
  const EventPrinter printer_;
  const std::string user_;  // empty outside of a meeting
  const bool subscribes_;
};

void Watch::Run() {
  constexpr std::chrono::hours kEver{24 * 365};
  const bool ends = context_.line.Has("--seconds");
  const auto end = Clock::now() + (ends ? std::chrono::seconds(context_.line.Number("--seconds", 1, 1)) : kEver);
  if (!user_.empty()) RequestJoin(context_, context_.line.Value("--join"), user_);
  if (!PrintUntil("", end) || user_.empty()) return;
  context_.Call("LeaveMeeting");
  (void)PrintUntil("LEAVE_MEETING_SUCCESS", Clock::now() + context_.line.Timeout());
}

bool Watch::PrintUntil(const std::string& key, Clock::time_point end) {
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    const auto event = context_.session.WaitEvent("", std::chrono::ceil<std::chrono::milliseconds>(end - now));
    if (event) Take(*event);
    if (event && event->key == key) return true;
    if (!event && context_.session.WaitClosed(std::chrono::milliseconds(0))) return false;
  }
  return true;
}

void Watch::Take(const client::Event& event) {
  printer_.Print(event);
  if (user_.empty() || !subscribes_ || event.key != "STREAM_ADDED") return;
  const MeetingStream stream = StreamOf(event);
  if (stream.uid != user_) RequestVideo(context_, stream);
}

}  // namespace

void CheckWatch(const CommandLine& line) {
  if (!line.Has("--join") && (line.Has("--as") || line.Has("--subscribe"))) {
    throw UsageError("--as and --subscribe go with --join");
  }
  CheckSubscribe(line);
  (void)line.Number("--seconds", 1, 1);
}

int RunWatch(Context& context) {
  Watch(context).Run();
  return 0;
}

}  // namespace ravo::ctl
