// How cost grows: the server's time for a frame by the number of streams, a request by the streams that are known, and
// a request by the events that the client has not read yet.
#include <fmt/format.h>
#include <ravo/frame_slot.h>

#include <array>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "Link.h"
#include "Server.h"
#include "Subjects.h"
#include "Table.h"
#include "client/Session.h"
#include "client/SlotTracker.h"
#include "common/JsonWriter.h"
#include "reader/SlotView.h"

namespace bench {

namespace {

using ravo::client::Session;
using ravo::client::SlotTracker;
using ravo::client::SlotView;
using Views = std::vector<std::unique_ptr<SlotView>>;

constexpr std::chrono::seconds kBound(30);
constexpr int kWidth = 320;
constexpr int kHeight = 180;

// A film of one grey picture: the simulated engine hands it on as it is, so that little of the time is the engine's.
std::string MakeFilm(const TempFolder& folder) {
  const std::string path = folder.Path("grey.y4m");
  std::ofstream(path) << fmt::format("YUV4MPEG2 W{} H{} F30:1 C420\nFRAME\n", kWidth, kHeight)
                      << std::string(kWidth * kHeight * 3 / 2, '\x80');
  return path;
}

// A room with so many others, where nothing but frames happens.
std::string Room(int participants, const std::string& film) {
  std::string list;
  for (int i = 0; i < participants; ++i) {
    list += fmt::format(R"({}{{"userId":"user{}","video":{},"encodings":[{{"width":{},"height":{}}}]}})",
                        i == 0 ? "" : ",", i, TESSARIN_COMMON::JsonText(film), kWidth, kHeight);
  }
  return R"("sim.pace":{"volumeMs":0,"qualityMs":0,"statsMs":0},"sim.room":{"participants":[)" + list + "]}";
}

constexpr const char* kJoinArguments = R"(["token","room","me",""])";

void Watch(Session& session, SlotTracker& tracker, int streams) {
  bool good = session.Connect(kBound) && session.Call("JoinMeeting", kJoinArguments, kBound).Ok();
  for (int i = 0; i < streams; ++i) good = good && session.WaitEvent("STREAM_ADDED", kBound);
  for (int i = 0; i < streams; ++i) {
    const std::string arguments = fmt::format(R"(["user{}_0",0,0,{{"subscribeClientId":"view"}}])", i);
    good = good && session.Call("SubscribeVideo", arguments, kBound).Ok();
  }
  const auto end = Clock::now() + kBound;
  while (good && static_cast<int>(tracker.Slots().size()) < streams && Clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (static_cast<int>(tracker.Slots().size()) != streams) throw std::runtime_error("the streams do not come");
}

Views OpenAll(const SlotTracker& tracker) {
  Views views;
  for (const auto& slot : tracker.Slots()) {
    std::string error;
    views.push_back(SlotView::Open(slot.path, RAVO_SLOT_EVENT_PREFIX + slot.path + RAVO_SLOT_SIDE_SUFFIX, error));
    if (views.back() == nullptr) throw std::runtime_error(error);
  }
  return views;
}

double FramesSoFar(const Views& views) {
  double frames = 0;
  for (const auto& view : views) frames += ravo_slot_load(reinterpret_cast<const std::uint32_t*>(view->Data()));
  return frames;
}

void FrameCost(int streams, const std::string& film, Samples& us) {
  constexpr std::chrono::seconds kWindow(1);
  Server server(Room(streams, film));
  Session session(server.Pipe());
  SlotTracker tracker(session);
  Watch(session, tracker, streams);
  const Views views = OpenAll(tracker);
  const double framesBefore = FramesSoFar(views);
  const double before = server.Process().CpuNanoseconds();
  std::this_thread::sleep_for(kWindow);
  us.push_back((server.Process().CpuNanoseconds() - before) / (FramesSoFar(views) - framesBefore) / 1000);
}

void RequestCostWithStreams(int streams, const std::string& film, Samples& us) {
  constexpr int kTrips = 500;
  Server server(Room(streams, film));
  Link link(server.Pipe());
  link.ReceiveWith("\"INIT\"");
  link.Send(RequestFrame("join_meeting", kJoinArguments));
  for (int i = 0; i < streams; ++i) link.ReceiveWith("STREAM_ADDED");
  const std::string frame = RequestFrame("fetch_stream_info", fmt::format(R"(["user{}",1])", streams - 1));
  for (int i = 0; i < kTrips; ++i) {
    us.push_back(NanosecondsOf([&] {
                   link.Send(frame);
                   link.ReceiveWith("FetchStreamInfo");
                 }) /
                 1000);
  }
}

// Waits until the process has nothing more to do, apart from its ticks.
void WaitQuiet(const Child& process) {
  constexpr double kTicksNanoseconds = 200'000;
  double last = 0;
  double now = process.CpuNanoseconds();
  while (now - last > kTicksNanoseconds) {
    last = now;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    now = process.CpuNanoseconds();
  }
}

// The server's time for each of many requests while so many events, and then the replies too, wait to be read.
void RequestCostWithEvents(Server& server, Link& link, int events, Samples& us) {
  constexpr int kRequests = 1000;
  const std::string fire =
      fmt::format(R"({{"sim.fire":[{{"entry":"OnVemoraException","times":{},"args":["text"]}}]}})", events);
  link.Send(RequestFrame("update_server_option", R"({"rtcParams":)" + TESSARIN_COMMON::JsonText(fire) + "}"));
  WaitQuiet(server.Process());
  std::string requests;
  for (int i = 0; i < kRequests; ++i) requests += RequestFrame("get_subscribe_status", "[]");
  const double before = server.Process().CpuNanoseconds();
  link.Send(requests);
  WaitQuiet(server.Process());
  us.push_back((server.Process().CpuNanoseconds() - before) / kRequests / 1000);
  for (int i = 0; i < kRequests; ++i) link.ReceiveWith("GetSubscribeStatus");
}

// One series: the cost at each count, and what it is of the cost at the first one.
template <std::size_t N, class Cost>
void AddSeries(Table& table, const std::string& name, int rounds, const std::array<int, N>& counts, Cost cost) {
  constexpr Limit kFlat = AtMost(1.5);
  std::vector<Side> sides;
  for (const int count : counts) {
    sides.push_back({std::to_string(count), [&cost, count](Samples& samples) { cost(count, samples); }});
  }
  const auto samples = Interleave(sides, rounds);
  for (std::size_t i = 0; i < N; ++i) {
    Row& row = table.Add(name, sides[i].name, samples[i]);
    if (i == 0) continue;
    row.ratio = row.p50 / Quantile(samples[0], 0.5);
    row.limit = kFlat;
  }
}

}  // namespace

void GrowthSubject(const std::string& out) {
  constexpr int kFew = 3;  // a server each
  constexpr int kMany = 15;
  const TempFolder folder;
  const std::string film = MakeFilm(folder);
  Table table("growth", "cost by the count; the ratio is to the first count", "us");
  AddSeries(table, "frame, streams", kFew, std::array{1, 2, 4, 9, 20, 49},
            [&](int count, Samples& us) { FrameCost(count, film, us); });
  AddSeries(table, "request, known", kFew, std::array{1, 10, 100, 1000},
            [&](int count, Samples& us) { RequestCostWithStreams(count, film, us); });
  Server server;
  Link link(server.Pipe());
  link.ReceiveWith("\"INIT\"");
  AddSeries(table, "request, pending", kMany, std::array{1, 10, 100, 1000, 10'000},
            [&](int count, Samples& us) { RequestCostWithEvents(server, link, count, us); });
  table.Finish(out);
}

}  // namespace bench
