// Starts, stops and kills of whole processes.
#include <fmt/format.h>

#include <filesystem>
#include <random>
#include <thread>

#include "Torture.h"

namespace torture {
namespace {

using integration::RawLink;
using integration::ServerProcess;

constexpr char kFastPictures[] = R"({"width":320,"height":180,"frameRate":200})";
constexpr char kFarewell[] = "the server stops";

// Kills the server after a moment, whatever happens meanwhile.
class Killer {
 public:
  Killer(support::Process& process, std::chrono::microseconds after)
      : thread_([&process, after] {
          std::this_thread::sleep_for(after);
          process.Kill();
        }) {}
  ~Killer() { thread_.join(); }
  Killer(const Killer&) = delete;
  Killer& operator=(const Killer&) = delete;

 private:
  std::thread thread_;
};

// A start under a name where a killed one may have left its socket, and with no trace of those before.
void RequireCleanHouse(const std::string& pipe, const std::vector<std::string>& slotPaths) {
  Server next("", pipe);
  RawLink link(pipe);
  Require(link.Connected() && !Await(link, R"("INIT")").empty(), "the next start serves");
  for (const auto& path : slotPaths) Require(ServerProcess::SharedNames(path).empty(), "nothing is left of " + path);
  link.Close();
  next.RequireGoodEnd();
}

}  // namespace

std::string StartAndStop(std::size_t rounds) {
  Times starts;
  Times stops;
  for (std::size_t round = 0; round < rounds; ++round) {
    const auto begin = Clock::now();
    Server server(Room(2, kFastPictures));
    RawLink link(server.Pipe());
    Require(link.Connected() && !Await(link, R"("INIT")").empty(), "the server starts: " + server.Host().Err());
    starts.Add(Clock::now() - begin);
    const std::string path = Watch(link, 2);
    Require(!path.empty(), "frames come: " + server.Host().Err());
    const std::string fire =
        R"({"sim.fire":[{"entry":"OnVolumeChange","args":[1,true,false],"threads":4,"times":1000}]})";
    Ask(link, "update_server_option", R"({"rtcParams":)" + integration::Quoted(fire) + "}");
    for (int i = 0; i < 50; ++i) Ask(link, "get_init_info");
    const auto left = Clock::now();
    link.Close();
    server.RequireGoodEnd(path);
    stops.Add(Clock::now() - left);
  }
  stops.RequireWithin(Milliseconds(1000), "the process is gone within a second");
  return fmt::format("start to INIT: {}; client gone to process gone: {}", starts.Text(), stops.Text());
}

std::string KillServer(std::size_t rounds) {
  std::mt19937 random(2);
  const std::string pipe = support::UniquePipeName();
  std::size_t withSlots = 0;
  for (std::size_t round = 0; round < rounds; ++round) {
    std::vector<std::string> paths;
    Server server(Room(2, kFastPictures), pipe);
    // One third dies during its start, the others at any time between the connection and well into the frames.
    if (round % 3 == 0) {
      // Before its first word the emulator's helper for its console is not settled, and would outlive it with its
      // pipes.
      if (kEmulated) Require(server.Host().WaitForOut("\n"), "the server begins: " + server.Host().Err());
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 60'000));
      server.Host().Kill();
    } else {
      RawLink link(pipe);
      Require(link.Connected(), "the next start serves");
      const Killer killer(server.Host(), std::chrono::microseconds(random() % 120'000));
      if (const std::string path = Watch(link, 2); !path.empty()) paths.push_back(path);
      link.WaitClosed();
    }
    Require(server.Host().Wait().value_or(0) != 0, "a killed server ends, and not by itself");
    withSlots += paths.size();
    RequireCleanHouse(pipe, paths);
  }
  return fmt::format("{} of them with slots; each next start found a clean house", withSlots);
}

std::string KillClient(std::size_t rounds) {
  Times seen;
  Times gone;
  for (std::size_t round = 0; round < rounds; ++round) {
    Server server;
    support::Process client(support::BesideTest("half_client"), {server.Pipe()});
    Require(client.WaitForOut("sent"), "a client connects: " + client.Err());
    const auto killed = Clock::now();
    client.Kill();
    Require(server.Host().WaitForOut(kFarewell), "the server sees that its client is gone");
    seen.Add(Clock::now() - killed);
    server.RequireGoodEnd();
    gone.Add(Clock::now() - killed);
  }
  seen.RequireWithin(Milliseconds(50), "a client's death is seen within 50 ms");
  gone.RequireWithin(Milliseconds(1000), "the process is gone within a second");
  return fmt::format("seen: {}; process gone: {}", seen.Text(), gone.Text());
}

}  // namespace torture
