#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>
#include <vector>

#include "Commands.h"
#include "Meeting.h"
#include "Output.h"
#include "ProcessSample.h"
#include "StreamReading.h"
#include "Table.h"
#include "Terminal.h"

namespace ravo::ctl {
namespace {

using Clock = Meeting::Clock;

constexpr std::chrono::seconds kRound{1};
constexpr double kLeastLoad = 0.05;  // percent; threads below it are not shown

std::vector<std::uint32_t> PidsOf(const std::string& list) {
  std::vector<std::uint32_t> pids;
  std::istringstream in(list);
  for (std::string word; std::getline(in, word, ',');) {
    if (word.empty() || word.size() > 9 || word.find_first_not_of("0123456789") != std::string::npos) {
      throw UsageError("--pids takes process ids with commas between, not " + list);
    }
    pids.push_back(static_cast<std::uint32_t>(std::stoul(word)));
  }
  return pids;
}

// In percent of one processor.
std::string Load(std::uint64_t nowNs, std::uint64_t beforeNs, double seconds) {
  return fmt::format("{:.1f}", static_cast<double>(nowNs - std::min(beforeNs, nowNs)) / seconds / 1e7);
}

// What the rounds compare: one process as it was a round ago.
class WatchedProcess {
 public:
  explicit WatchedProcess(std::uint32_t pid) : pid_(pid), before_(SampleProcess(pid)) {}

  // Rows: the process, then its threads that did something, the busiest first.
  void AddRows(Table& table, double seconds);

 private:
  [[nodiscard]] std::uint64_t ThreadNsBefore(std::uint32_t id) const;

  const std::uint32_t pid_;
  std::optional<ProcessSample> before_;
};

std::uint64_t WatchedProcess::ThreadNsBefore(std::uint32_t id) const {
  const auto found = std::ranges::find(before_->threads, id, &ThreadSample::id);
  return found == before_->threads.end() ? 0 : found->cpuNs;
}

void WatchedProcess::AddRows(Table& table, double seconds) {
  auto now = SampleProcess(pid_);
  if (!now || !before_) {
    table.Add({std::to_string(pid_), "-", "gone", "", ""});
    before_ = now;
    return;
  }
  table.Add({std::to_string(pid_), Load(now->cpuNs, before_->cpuNs, seconds), now->name.empty() ? "-" : now->name,
             std::to_string(now->memoryBytes >> 20), std::to_string(now->threads.size())});
  const auto spent = [this](const ThreadSample& thread) {
    return thread.cpuNs - std::min(thread.cpuNs, ThreadNsBefore(thread.id));
  };
  std::ranges::sort(now->threads, std::greater(), spent);
  for (const auto& thread : now->threads) {
    if (static_cast<double>(spent(thread)) / seconds / 1e7 < kLeastLoad) break;
    const std::string name = thread.name.empty() ? "thread" : thread.name;
    table.Add({std::to_string(thread.id), Load(thread.cpuNs, ThreadNsBefore(thread.id), seconds), "  " + name, "", ""});
  }
  before_ = std::move(now);
}

class Top {
 public:
  explicit Top(Context& context);

  void Round();
  void Leave();

 private:
  struct Stream {
    std::unique_ptr<StreamReading> reading;
    StreamReading::Progress before;
  };

  void WaitRound();
  void FindStreams();
  void Read(const std::string& sid, const std::string& uid, bool isScreen);
  [[nodiscard]] std::string StreamText(double seconds);
  [[nodiscard]] std::string ProcessText(double seconds);

  Context& context_;
  std::unique_ptr<Meeting> meeting_;
  std::map<std::string, Stream> streams_;
  std::vector<WatchedProcess> processes_;
  std::int64_t callsBefore_ = 0;
  std::int64_t events_ = 0;
  Clock::time_point begin_;
};

Top::Top(Context& context) : context_(context) {
  processes_.emplace_back(context.session.ServerProcessId());
  for (const auto pid : PidsOf(context.line.Value("--pids"))) processes_.emplace_back(pid);
  if (context.line.Has("--join")) {
    const std::string user = context.line.Value("--as", "ravoctl");
    meeting_ = std::make_unique<Meeting>(context, context.line.Value("--join"), user);
  }
  callsBefore_ = context.calls;
  begin_ = Clock::now();
}

void Top::Round() {
  FindStreams();
  WaitRound();
  const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
  begin_ = Clock::now();
  std::string text = fmt::format("{:.0f} requests a second, {:.0f} events\n",
                                 static_cast<double>(context_.calls - callsBefore_) / seconds,
                                 static_cast<double>(std::exchange(events_, 0)) / seconds);
  callsBefore_ = context_.calls;
  text += '\n' + StreamText(seconds) + '\n' + ProcessText(seconds);
  if (OutputIsTerminal()) ClearTerminal();
  PrintLine(text);
}

// Takes in what comes meanwhile.
void Top::WaitRound() {
  const auto end = begin_ + kRound;
  for (auto now = Clock::now(); now < end; now = Clock::now()) {
    const auto event = context_.session.WaitEvent("", std::chrono::ceil<std::chrono::milliseconds>(end - now));
    if (event) ++events_;
    if (!event && context_.session.WaitClosed(std::chrono::milliseconds(0))) {
      throw std::runtime_error("the server has ended the session");
    }
    if (!event || event->key != "STREAM_ADDED" || !meeting_) continue;
    const MeetingStream stream = StreamOf(*event);
    if (stream.uid == meeting_->User()) continue;
    meeting_->Subscribe(stream);
    Read(stream.sid, stream.uid, stream.isScreen);
  }
}

// Those that have a slot already, be it the preview's or one of somebody's wishes.
void Top::FindStreams() {
  if (!context_.slots.Refresh(context_.line.Timeout())) throw std::runtime_error("the server does not tell its slots");
  ++context_.calls;
  for (const auto& slot : context_.slots.Slots()) Read(slot.sid, slot.uid, slot.isScreen);
}

void Top::Read(const std::string& sid, const std::string& uid, bool isScreen) {
  Stream& stream = streams_[sid];
  if (stream.reading == nullptr) {
    stream.reading = std::make_unique<StreamReading>(context_.slots, sid, uid, isScreen);
  }
}

std::string Top::StreamText(double seconds) {
  Table table({"STREAM", "USER", " SIZE", " PER S", " DROPPED"});
  for (auto& [sid, stream] : streams_) {
    const auto now = stream.reading->Now();
    const auto frames = static_cast<double>(now.frames - stream.before.frames) / seconds;
    table.Add({sid, stream.reading->Uid(), fmt::format("{}x{}", now.width, now.height), fmt::format("{:.1f}", frames),
               std::to_string(now.dropped - stream.before.dropped)});
    stream.before = now;
  }
  return table.Text();
}

std::string Top::ProcessText(double seconds) {
  Table table({" PID", " CPU %", "PROCESS, THREADS", " MB", " THREADS"});
  for (auto& process : processes_) process.AddRows(table, seconds);
  return table.Text();
}

void Top::Leave() {
  for (const auto& [sid, stream] : streams_) stream.reading->Stop();
  if (meeting_) meeting_->Leave();
}

}  // namespace

void CheckTop(const CommandLine& line) {
  if (line.Has("--as") && !line.Has("--join")) throw UsageError("--as goes with --join");
  (void)line.Number("--rounds", 1, 1);
  (void)PidsOf(line.Value("--pids"));
}

int RunTop(Context& context) {
  Top top(context);
  const bool ends = context.line.Has("--rounds");
  const int rounds = context.line.Number("--rounds", 1, 1);
  for (int round = 0; !ends || round < rounds; ++round) top.Round();
  top.Leave();
  return 0;
}

}  // namespace ravo::ctl
