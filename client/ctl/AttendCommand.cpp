#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>

#include "Commands.h"
#include "Files.h"
#include "StreamReading.h"
#include "common/JsonNode.h"
#include "common/JsonWriter.h"

namespace ravo::ctl {
namespace {

using TESSARIN_COMMON::JsonNode;
using TESSARIN_COMMON::JsonWriter;
using Clock = std::chrono::steady_clock;

constexpr char kClientId[] = "ravoctl";

// One visit to a meeting, with a reading thread for each stream that turns up.
class Visit {
 public:
  explicit Visit(Context& context)
      : context_(context),
        subscribes_(context.line.Value("--subscribe", "all") == "all"),
        seconds_(context.line.Number("--seconds", 5, 1)) {}

  void Join();
  // Takes in streams until the time is over, which begins with the first one.
  void Stay();
  void Leave();
  void WritePictures(const std::string& folder) const;
  // True if all streams that were subscribed to have given frames.
  [[nodiscard]] bool PrintTable() const;

 private:
  void Expect(const char* event);
  void AddStream(const client::Event& event);
  void Subscribe(const std::string& sid, std::size_t encoding);

  Context& context_;
  const bool subscribes_;
  const int seconds_;
  std::vector<std::unique_ptr<StreamReading>> streams_;
};

void Visit::Expect(const char* event) {
  if (context_.session.WaitEvent(event, context_.line.Timeout())) return;
  throw std::runtime_error(
      fmt::format("the event {} has not come within {} s", event, context_.line.Timeout().count()));
}

void Visit::Join() {
  Expect("connect");
  Expect("INIT");
  JsonWriter arguments;
  arguments.StartArray();
  for (const std::string& text : {std::string("token"), context_.Word(0), context_.Word(1), std::string()}) {
    arguments.Add(nullptr, text);
  }
  arguments.EndArray();
  const std::string result = context_.Call("JoinMeeting", arguments.Text());
  if (result.starts_with('-')) throw std::runtime_error("JoinMeeting: the engine refuses with " + result);
  Expect("JOIN_CHANNEL_SUCCESS");
  fmt::print("joined {} as {}\n", context_.Word(0), context_.Word(1));
}

void Visit::Stay() {
  auto end = Clock::now() + context_.line.Timeout();
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    const auto event =
        context_.session.WaitEvent("STREAM_ADDED", std::chrono::duration_cast<std::chrono::milliseconds>(end - now) +
                                                       std::chrono::milliseconds(1));
    if (event) {
      const bool first = streams_.empty();
      AddStream(*event);
      if (first && !streams_.empty()) end = Clock::now() + std::chrono::seconds(seconds_);
    } else if (context_.session.WaitClosed(std::chrono::milliseconds(0))) {
      throw std::runtime_error("the server has ended the session");
    }
  }
  if (streams_.empty()) throw std::runtime_error("nobody sends a stream in " + context_.Word(0));
}

// The event's arguments: user, stream, whether it is a screen, encodings.
void Visit::AddStream(const client::Event& event) {
  JsonNode arguments(event.content);
  std::string uid;
  std::string sid;
  bool isScreen = false;
  arguments[0].Get("", uid);
  arguments[1].Get("", sid);
  arguments[2].Get("", isScreen);
  if (uid == context_.Word(1)) return;  // nobody subscribes to what is his own
  std::size_t best = 0;
  std::int64_t most = 0;
  for (std::size_t i = 0; i < arguments[3].Size(); ++i) {
    std::int64_t width = 0;
    std::int64_t height = 0;
    arguments[3][i].Get("width", width);
    arguments[3][i].Get("height", height);
    if (width * height > most) best = i;
    most = std::max(most, width * height);
  }
  fmt::print("stream {} of {}{}\n", sid, uid, isScreen ? ", a screen" : "");
  if (subscribes_) Subscribe(sid, best);
  streams_.push_back(std::make_unique<StreamReading>(context_.slots, sid, uid, isScreen));
}

void Visit::Subscribe(const std::string& sid, std::size_t encoding) {
  JsonWriter arguments;
  arguments.StartArray();
  arguments.Add(nullptr, sid);
  arguments.Add(nullptr, static_cast<std::uint64_t>(encoding));
  arguments.Add(nullptr, std::int32_t{0});
  arguments.StartObject();
  arguments.Add("subscribeClientId", kClientId);
  arguments.EndObject();
  arguments.EndArray();
  context_.Call("SubscribeVideo", arguments.Text());
}

void Visit::Leave() {
  for (const auto& stream : streams_) stream->Stop();
  context_.Call("LeaveMeeting");
  Expect("LEAVE_MEETING_SUCCESS");
}

// Users choose their ids, and files their folder.
std::string FileName(const StreamReading& stream) {
  std::string name = stream.Uid();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c) && c != '-'; }, '_');
  return name + (stream.IsScreen() ? "-screen.png" : ".png");
}

void Visit::WritePictures(const std::string& folder) const {
  std::filesystem::create_directories(PathFromUtf8(folder));
  for (const auto& stream : streams_) {
    if (stream->Frames() > 0) WritePng(folder + "/" + FileName(*stream), stream->LastFrame());
  }
}

std::string AgeText(const StreamReading& stream, int percent) {
  const auto age = Percentile(stream.AgesMs(), percent);
  return age ? fmt::format("{} ms", *age) : "n/a";
}

bool Visit::PrintTable() const {
  bool complete = true;
  fmt::print("\n{:<24} {:<16} {:>10} {:>7} {:>7} {:>8} {:>8}\n", "STREAM", "USER", "SIZE", "FRAMES", "PER S", "AGE P50",
             "AGE P99");
  for (const auto& stream : streams_) {
    const auto& frame = stream->LastFrame();
    fmt::print("{:<24} {:<16} {:>10} {:>7} {:>7.1f} {:>8} {:>8}\n", stream->Sid(), stream->Uid(),
               fmt::format("{}x{}", frame.width, frame.height), stream->Frames(), stream->FramesPerSecond(),
               AgeText(*stream, 50), AgeText(*stream, 99));
    if (subscribes_ && stream->Frames() == 0) complete = false;
    if (!stream->Failure().empty()) fmt::print(stderr, "ravoctl: {}: {}\n", stream->Sid(), stream->Failure());
  }
  return complete;
}

}  // namespace

void CheckAttend(const CommandLine& line) {
  const std::string subscribe = line.Value("--subscribe", "all");
  if (subscribe != "all" && subscribe != "none") throw UsageError("--subscribe takes all or none, not " + subscribe);
  (void)line.Number("--seconds", 5, 1);
}

int RunAttend(Context& context) {
  Visit visit(context);
  visit.Join();
  visit.Stay();
  visit.Leave();
  if (context.line.Has("--png-dir")) visit.WritePictures(context.line.Value("--png-dir"));
  if (visit.PrintTable()) return 0;
  throw std::runtime_error("not every stream has given frames");
}

}  // namespace ravo::ctl
