// Servers that live under load.
#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "Torture.h"
#include "client/Session.h"
#include "client/SlotTracker.h"

namespace torture {
namespace {

using integration::RawLink;
using ravo::client::Frame;
using ravo::client::FrameReader;
using ravo::client::Reply;
using ravo::client::Session;
using ravo::client::SlotTracker;

// Calls at a steady rate and looks at the order of the answers.
class Caller {
 public:
  explicit Caller(Session& session) : session_(session) {}

  void CallOnce() {
    static constexpr const char* kMethods[] = {"Connect", "GetInitInfo", "GetShareMemoryInfo", "GetSubscribeStatus"};
    session_.CallAsync(kMethods[sent_ % std::size(kMethods)], "[]", [this, number = sent_](const Reply& reply) {
      if (!reply.Ok() || number != answered_) wrong_ = true;
      ++answered_;
    });
    ++sent_;
  }
  [[nodiscard]] std::size_t Sent() const { return sent_; }
  [[nodiscard]] std::size_t Unanswered() const { return sent_ - answered_; }
  [[nodiscard]] bool Wrong() const { return wrong_; }

 private:
  Session& session_;
  std::size_t sent_ = 0;
  std::atomic<std::size_t> answered_{0};
  std::atomic<bool> wrong_{false};
};

// Joins with so many participants and subscribes to each.
void Subscribe(Session& session, std::size_t streams) {
  const auto call = [&](const char* method, const std::string& arguments) {
    Require(session.Call(method, arguments, integration::kBound).Ok(), std::string(method) + " is answered");
  };
  call("JoinMeeting", R"(["token","room","me",""])");
  for (std::size_t i = 0; i < streams; ++i) {
    Require(session.WaitEvent("STREAM_ADDED", integration::kBound).has_value(), "all streams are announced");
  }
  for (std::size_t i = 0; i < streams; ++i) {
    call("SubscribeVideo", R"([")" + Sid(i) + R"(",0,0,{"subscribeClientId":"view"}])");
  }
}

}  // namespace

std::string DeafClient(std::size_t seconds) {
  constexpr double kKeptMiB = 64;                     // by the transport
  constexpr double kMarginMiB = kEmulated ? 48 : 16;  // what is being formatted, and the gaps of the heap
  // 2 MiB a tick, so that the queue is full within seconds and no machine falls behind with the ticks. In small pieces,
  // since the text of an update stays in memory for good, which is wanted.
  constexpr std::size_t kThreads = 4;
  constexpr std::size_t kTimes = 64;
  constexpr std::size_t kEventBytes = 8 << 10;
  const std::string volley =
      fmt::format(R"({{"sim.fire":[{{"entry":"OnVemoraException","threads":{},"times":{},"args":["{}"]}}]}})", kThreads,
                  kTimes, std::string(kEventBytes, 'x'));
  const std::string fire = R"({"rtcParams":)" + integration::Quoted(volley) + "}";
  Server server;
  RawLink link(server.Pipe());
  Require(link.Connected() && !Await(link, R"("INIT")").empty(), "the server starts");
  const double before = ResidentMiB(link.ServerProcessId());
  double most = before;
  std::size_t events = 0;
  for (const auto end = Clock::now() + std::chrono::seconds(seconds); Clock::now() < end; events += kThreads * kTimes) {
    Ask(link, "update_server_option", fire);
    std::this_thread::sleep_for(Milliseconds(100));
    most = std::max(most, ResidentMiB(link.ServerProcessId()));
  }
  Require(most - before > kKeptMiB / 2, fmt::format("there was a load: {:.0f} MiB", most - before));
  Require(kSanitized || most - before < kKeptMiB + kMarginMiB,
          fmt::format("the memory is bounded: {:.0f} MiB more", most - before));
  Times stop;
  const auto asked = Clock::now();
  server.Host().Interrupt();
  server.RequireGoodEnd();
  stop.Add(Clock::now() - asked);
  stop.RequireWithin(Milliseconds(1000), "the server stops within a second");
  return fmt::format("{} MiB of events; memory {:.0f} MiB, at most {:.0f} MiB more; stop: {}",
                     events * kEventBytes >> 20, before, most - before, stop.Text());
}

std::string Soak(std::size_t seconds) {
  constexpr std::size_t kStreams = 32;
  constexpr std::size_t kCallsPerTick = 10;
  constexpr Milliseconds kTick{10};
  constexpr std::size_t kMostUnanswered = 500;  // a machine that is too slow gets fewer calls, and no heap of them
  constexpr double kFlatMiB = 8;
  Server server(Room(kStreams, R"({"width":320,"height":180})"));
  Session session(server.Pipe());
  SlotTracker tracker(session);
  Require(session.Connect(std::chrono::seconds(60)), "the server starts");
  Subscribe(session, kStreams);

  std::atomic<bool> stop{false};
  std::atomic<std::size_t> frames{0};
  std::thread reader([&] {
    Frame frame;
    for (std::size_t i = 0; !stop; ++i) {
      if (tracker.Read(Sid(i % kStreams), frame, Milliseconds(50)) == FrameReader::Outcome::Frame) ++frames;
    }
  });
  Caller caller(session);
  const auto begin = Clock::now();
  const auto warm = begin + std::chrono::seconds(seconds) / 5;
  const auto end = begin + std::chrono::seconds(seconds);
  double early = 0;
  for (auto next = begin; next < end; next += kTick) {
    for (std::size_t i = 0; i < kCallsPerTick && caller.Unanswered() < kMostUnanswered; ++i) caller.CallOnce();
    if (early == 0 && next >= warm) early = ResidentMiB(session.ServerProcessId());
    std::this_thread::sleep_until(next);
  }
  const bool answered = integration::WaitUntil([&] { return caller.Unanswered() == 0; });
  const double late = ResidentMiB(session.ServerProcessId());
  stop = true;
  reader.join();
  session.Close();
  Require(answered, "no reply is lost");
  Require(!caller.Wrong(), "replies come in order, and none is an error");
  Require(kSanitized || late - early < kFlatMiB,
          fmt::format("memory stays flat: {:.1f} MiB, then {:.1f} MiB", early, late));
  Require(frames >= kStreams * seconds, fmt::format("frames come: {}", frames.load()));
  server.RequireGoodEnd();
  return fmt::format("{} streams, {} requests answered in order, {} frames read; memory {:.1f} MiB, then {:.1f} MiB",
                     kStreams, caller.Sent(), frames.load(), early, late);
}

}  // namespace torture
