// Both ends of a link in one thread, with every call of the system and every piece of memory failing once.
#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "FaultTest.h"
#include "common/Platform.h"
#include "ipc/NamedPipeClient.h"
#include "ipc/NamedPipeServer.h"

namespace {

using namespace TESSARIN_COMMON;
using faults::Case;

// The codes alone: which system error stands behind one is the fault's own.
class Codes final : public IIpcErrorReporter {
 public:
  void OnIpcError(std::int32_t code, const char*) override {
    if (code < 0) text_ += ' ' + std::to_string(code);
  }
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

class Link {
 public:
  explicit Link(const std::string& name) : name_(name), server_(name), client_(name) {
    server_.SetErrorReporter(&codes_);
    client_.SetErrorReporter(&codes_);
    client_.SetSleep([](auto) {});
  }

  // A message that is larger than what the system takes at once, there and back. What failed, with its codes.
  std::string Run() {
    if (!server_.Open()) return Failed("open");
    if (!client_.Connect(0)) return Failed("connect");
    if (!server_.WaitConnect()) return Failed("wait");
    if (access(name_.c_str(), F_OK) == 0) return Failed("name");
    if (const std::string failed = Pass(client_, server_); !failed.empty()) return Failed(failed + " to the server");
    if (const std::string failed = Pass(server_, client_); !failed.empty()) return Failed(failed + " to the client");
    server_.Disconnect();
    server_.Close();
    return server_.Open() ? Failed("done") : Failed("open again");
  }

 private:
  static constexpr std::size_t kBytes = 260'000;

  std::string Failed(const std::string& what) { return what + codes_.Text(); }

  static std::string Pass(NamedPipe& from, NamedPipe& to) {
    const std::string sent(kBytes, 'x');
    std::string received(kBytes, '\0');
    if (!from.Send(sent.data(), kBytes)) return "send";
    if (!to.RecvData(received.data(), kBytes)) return "receive";
    std::int32_t count = 0;
    while ((count = to.WaitRecvData()) == 0) from.WaitRecvData();  // flushes what its side has kept
    if (count < 0) return "wait";
    if (static_cast<std::size_t>(count) != kBytes) return "half a message";
    return received == sent ? "" : "wrong bytes";
  }

  const std::string name_;
  Codes codes_;
  NamedPipeServer server_;
  NamedPipeClient client_;
};

// A byte of the other side's; false if the link is gone.
bool Hears(NamedPipe& link) {
  char byte = 0;
  if (!link.RecvData(&byte, 1)) return false;
  std::int32_t count = 0;
  while (count == 0) count = link.WaitRecvData();
  return count == 1;
}

// A server that opens anew after each client that it loses, and a client that comes again until the two have talked.
std::string MeetAgain(const std::string& name) {
  std::atomic<bool> met{false};
  std::thread serving([&] {
    while (!met) {
      NamedPipeServer server(name);
      met = server.Open() && server.WaitConnect() && Hears(server) && server.Send("s", 1) && !Hears(server);
    }
  });
  Codes codes;
  bool heard = false;
  while (!heard) {
    NamedPipeClient client(name);
    client.SetErrorReporter(&codes);
    client.SetSleep([](auto) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
    heard = client.Connect(30'000) && client.Send("c", 1) && Hears(client);
  }
  serving.join();
  return "done" + codes.Text();
}

// Without memory, which may be what fails.
int CountDescriptors() {
  int count = 0;
  for (int descriptor = 0; descriptor < 256; ++descriptor) count += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
  return count;
}

std::string RunLink(const std::string& name) {
  return Link(name).Run();
}

// For the name of a link.
class Folder {
 public:
  Folder() { std::filesystem::create_directory(folder_); }
  ~Folder() {
    EXPECT_TRUE(std::filesystem::is_empty(folder_));
    std::filesystem::remove_all(folder_);
  }

  // What came of it, and what it left.
  std::string Play(std::string (*scenario)(const std::string&)) const {
    const int before = CountDescriptors();
    std::string outcome = scenario(name_);
    faults::Disarm();
    if (CountDescriptors() != before) outcome += ", with a descriptor left";
    if (std::filesystem::exists(std::filesystem::symlink_status(name_))) outcome += ", with its name left";
    return outcome;
  }

 private:
  const std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("ravo_faults_" + std::to_string(CurrentProcessId()));
  const std::string name_ = folder_ / "link";
};

using TransportFault = faults::FaultTest;

TEST_P(TransportFault, IsReportedAndLeavesNothing) {
  const Folder folder;
  faults::ExpectOutcomes(GetParam(), [&] { return folder.Play(RunLink); });
}

TEST(NameFault, LeavesANameThatTheNextServerReplaces) {
  const Folder folder;
  const auto run = [&] { return folder.Play(RunLink); };
  faults::RunWithFault("unlink", 1, run);
  faults::ExpectOutcomes(
      {"unlink", {"open, with its name left", "name, with its name left", "done, with its name left"}}, run);
}

TEST(PeerFault, CostsTheLinkAndNoMore) {
  const Folder folder;
  faults::ExpectOutcomes({"close", {"done"}}, [&] { return folder.Play(MeetAgain); });
  faults::ExpectOutcomes({"getsockopt", {"done -1005", "done -1008"}, {"done", "done -1004", "done -1006"}},
                         [&] { return folder.Play(MeetAgain); });
}

INSTANTIATE_TEST_SUITE_P(
    All, TransportFault,
    testing::Values(Case{"socket", {"open", "done", "open again"}}, Case{"bind", {"open", "open again"}},
                    Case{"listen", {"open", "open again"}}, Case{"fchmod", {"open", "open again"}},
                    Case{"eventfd", {"open -1003", "connect -1003", "open again -1003"}},
                    Case{"accept4", {"wait -2002"}}, Case{"connect", {"done"}},
                    Case{"shutdown", {"done", "done -2003"}}, Case{"poll", {"done"}},
                    Case{"sendmsg", {"send to the server -1006", "send to the client -2004"}},
                    Case{"send", {"half a message to the server", "half a message to the client"}},
                    Case{"recvmsg",
                         {"wait to the server -2006", "half a message to the server", "wait to the client -1008",
                          "half a message to the client"}},
                    Case{faults::kMemory,
                         {"no memory", "open", "open -1003", "connect -1003", "send to the server -1006",
                          "send to the client -2004", "open again", "open again -1003"}}),
    faults::NameOf);

}  // namespace
