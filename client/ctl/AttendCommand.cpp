#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <memory>

#include "Commands.h"
#include "Files.h"
#include "Meeting.h"
#include "StreamReading.h"
#include "Table.h"
#include "common/JsonWriter.h"

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
    if (!context.line.Json()) fmt::print("joined {} as {}\n", meeting_.Room(), meeting_.User());
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
  if (!context_.line.Json())
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

std::string TextTable(const std::vector<std::unique_ptr<StreamReading>>& streams) {
  Table table({"STREAM", "USER", " SIZE", " FRAMES", " PER S", " AGE P50", " AGE P99"});
  for (const auto& stream : streams) {
    const auto& frame = stream->LastFrame();
    table.Add({stream->Sid(), stream->Uid(), fmt::format("{}x{}", frame.width, frame.height),
               std::to_string(stream->Frames()), fmt::format("{:.1f}", stream->FramesPerSecond()), AgeText(*stream, 50),
               AgeText(*stream, 99)});
  }
  return table.Text();
}

// Ages that are not known are -1.
std::string JsonTable(const std::vector<std::unique_ptr<StreamReading>>& streams) {
  TESSARIN_COMMON::JsonWriter writer;
  writer.StartArray();
  for (const auto& stream : streams) {
    writer.StartObject();
    writer.Add("sid", stream->Sid());
    writer.Add("uid", stream->Uid());
    writer.Add("width", stream->LastFrame().width);
    writer.Add("height", stream->LastFrame().height);
    writer.Add("frames", stream->Frames());
    writer.Add("framesPerSecond", stream->FramesPerSecond());
    writer.Add("ageP50Ms", Percentile(stream->AgesMs(), 50).value_or(-1));
    writer.Add("ageP99Ms", Percentile(stream->AgesMs(), 99).value_or(-1));
    writer.EndObject();
  }
  writer.EndArray();
  return writer.Text() + '\n';
}

bool Visit::PrintTable() const {
  fmt::print("{}", context_.line.Json() ? JsonTable(streams_) : '\n' + TextTable(streams_));
  bool complete = true;
  for (const auto& stream : streams_) {
    if (subscribes_ && stream->Frames() == 0) complete = false;
    if (!stream->Failure().empty()) fmt::print(stderr, "ravoctl: {}: {}\n", stream->Sid(), stream->Failure());
  }
  return complete;
}

}  // namespace

void CheckSubscribe(const CommandLine& line) {
  const std::string subscribe = line.Value("--subscribe", "all");
  if (subscribe != "all" && subscribe != "none") throw UsageError("--subscribe takes all or none, not " + subscribe);
}

void CheckAttend(const CommandLine& line) {
  CheckSubscribe(line);
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
