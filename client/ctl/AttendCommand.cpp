#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>

#include "Commands.h"
#include "Files.h"
#include "Meeting.h"
#include "StreamReading.h"

namespace ravo::ctl {
namespace {

// One visit to a meeting, with a reading thread for each stream that turns up.
class Visit {
 public:
  explicit Visit(Context& context)
      : context_(context),
        subscribes_(context.line.Value("--subscribe", "all") == "all"),
        seconds_(context.line.Number("--seconds", 5, 1)),
        meeting_(context, context.Word(0), context.Word(1)) {
    fmt::print("joined {} as {}\n", meeting_.Room(), meeting_.User());
  }

  // Takes in streams until the time is over, which begins with the first one.
  void Stay();
  void Leave();
  void WritePictures(const std::string& folder) const;
  // True if all streams that were subscribed to have given frames.
  [[nodiscard]] bool PrintTable() const;

 private:
  void Add(const MeetingStream& stream);

  Context& context_;
  const bool subscribes_;
  const int seconds_;
  Meeting meeting_;
  std::vector<std::unique_ptr<StreamReading>> streams_;
};

void Visit::Stay() {
  auto end = Meeting::Clock::now() + context_.line.Timeout();
  while (const auto stream = meeting_.NextStream(end)) {
    Add(*stream);
    if (streams_.size() == 1) end = Meeting::Clock::now() + std::chrono::seconds(seconds_);
  }
  if (streams_.empty()) throw std::runtime_error("nobody sends a stream in " + meeting_.Room());
}

void Visit::Add(const MeetingStream& stream) {
  fmt::print("stream {} of {}{}\n", stream.sid, stream.uid, stream.isScreen ? ", a screen" : "");
  if (subscribes_) meeting_.Subscribe(stream);
  streams_.push_back(std::make_unique<StreamReading>(context_.slots, stream.sid, stream.uid, stream.isScreen));
}

void Visit::Leave() {
  for (const auto& stream : streams_) stream->Stop();
  meeting_.Leave();
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
  visit.Stay();
  visit.Leave();
  if (context.line.Has("--png-dir")) visit.WritePictures(context.line.Value("--png-dir"));
  if (visit.PrintTable()) return 0;
  throw std::runtime_error("not every stream has given frames");
}

}  // namespace ravo::ctl
