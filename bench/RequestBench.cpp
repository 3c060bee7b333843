// Requests through pipe, dispatch, handler, log and reply of a server process, and the same bytes through an echo.
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "Link.h"
#include "Measure.h"
#include "Server.h"
#include "Subjects.h"
#include "Table.h"

namespace bench {

namespace {

constexpr int kRounds = 15;
constexpr int kTripsARound = 500;
constexpr int kFlightsARound = 4000;

struct Size {
  const char* name;
  std::size_t bytes;
};
constexpr Size kSmall{"300 bytes", 300};
constexpr Size kLarge{"2 KB", 2048};

// The server and all peers, each in a process of its own, and a client of each.
class Contest {
 public:
  Contest() {
    int number = 0;
    std::vector<std::string> paths;
    for (const EchoPeer& peer : EchoPeers()) {  // clients start threads of their libraries, so all processes come first
      paths.push_back(folder_.Path("peer" + std::to_string(number++)));
      if (peer.serve != nullptr) servers_.emplace_back([&] { peer.serve(paths.back()); });
    }
    auto ours = std::make_unique<Link>(server_.Pipe(), kResponse);
    ours->ReceiveWith("\"INIT\"");
    names_.emplace_back("ravo");
    clients_.push_back(std::move(ours));
    for (std::size_t i = 0; i < paths.size(); ++i) {
      names_.emplace_back(EchoPeers()[i].name);
      clients_.push_back(EchoPeers()[i].connect != nullptr ? EchoPeers()[i].connect(paths[i]) : nullptr);
    }
  }

  // A side for each: the work is given the client and the samples.
  template <class Work>
  [[nodiscard]] std::vector<Side> Sides(Work work) const {
    std::vector<Side> sides;
    for (std::size_t i = 0; i < clients_.size(); ++i) {
      EchoClient* const client = clients_[i].get();
      sides.push_back({names_[i], nullptr});
      if (client != nullptr) sides.back().round = [=](Samples& samples) { work(*client, samples); };
    }
    return sides;
  }

 private:
  const TempFolder folder_;
  Server server_;
  std::deque<Child> servers_;
  std::vector<std::string> names_;
  std::vector<std::unique_ptr<EchoClient>> clients_;
};

}  // namespace

void RequestSubject(const std::string& out) {
  const Contest contest;
  Table table("request", "get_subscribe_status and its reply, all included; an echo of the same bytes", "us");
  const auto compare = [&](const Size& size, double ofBareEcho) {
    const std::string frame = RequestFrame("get_subscribe_status", "[]", size.bytes);
    const auto work = [&](EchoClient& client, Samples& samples) {
      for (int i = 0; i < kTripsARound; ++i) {
        samples.push_back(NanosecondsOf([&] { client.RoundTrip(frame); }) / 1000);
      }
    };
    table.Compare(size.name, contest.Sides(work), {{}, AtMost(ofBareEcho), AtMost(0.5), AtMost(0.5), {}, {}}, kRounds);
  };
  compare(kSmall, 2.1);
  compare(kLarge, 2.5);
  table.Finish(out);
}

// On all cores client and server run at once, as they do at a user's; nobody else is there then. On one core every
// reply lets the client run, and most switches are for that.
void InFlightSubject(const std::string& out) {
  Table table("inflight", "32 requests in flight; an echo of the same bytes", "requests/s", Table::Better::Higher);
  const auto flight = [](const Size& size) {
    return [frame = RequestFrame("get_subscribe_status", "[]", size.bytes)](EchoClient& client, Samples& samples) {
      const double nanoseconds = NanosecondsOf([&] { client.Flight(frame, kFlightsARound); });
      samples.push_back(kFlightsARound / nanoseconds * 1e9);
    };
  };
  const Limit limit = AtLeast(100'000);
  UseCores(Cores::All);
  {
    const Server server;
    Link link(server.Pipe(), kResponse);
    link.ReceiveWith("\"INIT\"");
    const auto ours = [&, work = flight(kSmall)](Samples& samples) { work(link, samples); };
    table.Compare("300 B, all cores", {{"ravo", ours}}, {limit}, kRounds);
  }
  UseCores(Cores::One);
  const Contest contest;
  table.Compare(kSmall.name, contest.Sides(flight(kSmall)), {limit, {}, {}, {}, {}, {}}, kRounds);
  table.Compare(kLarge.name, contest.Sides(flight(kLarge)), {{}, {}, {}, {}, {}, {}}, kRounds);
  table.Finish(out);
}

}  // namespace bench
