// The link alone, both ends in this process.
#include <fmt/format.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "Torture.h"
#include "ipc/IPCClient.h"
#include "ipc/IPCServer.h"

namespace torture {
namespace {

using TESSARIN_COMMON::IPCClient;
using TESSARIN_COMMON::IPCServer;
using TESSARIN_COMMON::NamedPipeClient;

// Counts what an endpoint tells, and looks whether messages are whole: all bytes of one are alike.
class Counter final : public TESSARIN_COMMON::IIPCDelegate {
 public:
  void OnConnected() override { Count(connected_, 1); }
  void OnDisconnect() override {}
  void OnDataReceived(const char* data, std::uint32_t length) override {
    Count(std::string_view(data, length).find_first_not_of(data[0]) == std::string_view::npos ? messages_ : torn_, 1);
  }
  void OnErrorReport(std::int32_t, const char*) override {}

  bool WaitConnected(std::size_t count) { return Wait(connected_, count); }
  bool WaitMessages(std::size_t count) { return Wait(messages_, count); }

 private:
  void Count(std::size_t& what, std::size_t more) {
    const std::lock_guard lock(mutex_);
    what += more;
    changed_.notify_all();
  }
  bool Wait(const std::size_t& what, std::size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, integration::kBound, [&] { return what >= count || torn_ > 0; }) && torn_ == 0;
  }

  std::mutex mutex_;  // guards the counts
  std::condition_variable changed_;
  std::size_t connected_ = 0;
  std::size_t messages_ = 0;
  std::size_t torn_ = 0;
};

}  // namespace

// Both ends send a megabyte before either has read one.
std::string BothWrite(std::size_t rounds) {
  constexpr std::uint32_t kBytes = 1 << 20;
  const std::string pipe = support::UniquePipeName();
  Counter atServer;
  Counter atClient;
  IPCServer server(pipe);
  IPCClient client(pipe, IPCClient::kFramed);
  server.SetDelegate(&atServer);
  client.SetDelegate(&atClient);
  Require(server.Start() && client.Start(30) && atServer.WaitConnected(1), "a link comes about");
  const auto begin = Clock::now();
  Times times;
  for (std::size_t round = 1; round <= rounds; ++round) {
    const std::string text(kBytes, static_cast<char>('a' + round % 26));
    const auto sent = Clock::now();
    std::thread other([&] { server.Send(text.data(), kBytes); });
    client.Send(text.data(), kBytes);
    other.join();
    const bool arrived = atServer.WaitMessages(round) && atClient.WaitMessages(round);
    times.Add(Clock::now() - sent);
    Require(arrived, fmt::format("both messages of round {} arrive whole", round));
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  return fmt::format("1 MiB both ways at once: {}, {:.0f} MiB/s", times.Text(),
                     2.0 * static_cast<double>(rounds) / seconds);
}

// Clients that leave without a word, after half a length, after half a body; each is the next one of the one before.
std::string SilentLeavers(std::size_t rounds) {
  constexpr std::string_view kLastWords[] = {"", {"\x10\0", 2}, {"\x10\0\0\0{\"", 6}};
  const std::string pipe = support::UniquePipeName();
  Counter counter;
  IPCServer server(pipe);
  server.SetDelegate(&counter);
  Require(server.Start(), "the server starts");
  Times times;
  auto left = Clock::now();
  for (std::size_t round = 1; round <= rounds + 1; ++round) {
    NamedPipeClient client(pipe);
    client.SetSleep([](auto) { std::this_thread::sleep_for(Milliseconds(1)); });
    Require(client.Connect(15'000) && counter.WaitConnected(round), fmt::format("client {} is served", round));
    times.Add(Clock::now() - left);
    const std::string_view words = round > rounds ? std::string_view("\1\0\0\0x", 5) : kLastWords[round % 3];
    if (!words.empty()) Require(client.Send(words.data(), static_cast<std::uint32_t>(words.size())), "bytes are taken");
    if (round > rounds) Require(counter.WaitMessages(1), "the last client is heard");
    left = Clock::now();
    client.Disconnect();
  }
  times.RequireWithin(Milliseconds(50), "the next client is served within 50 ms");
  return fmt::format("the next one served: {}", times.Text());
}

}  // namespace torture
