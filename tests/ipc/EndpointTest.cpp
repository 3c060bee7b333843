#include <condition_variable>
#include <thread>

#include "PipeFixture.h"
#include "ipc/IPCClient.h"
#include "ipc/IPCServer.h"
#include "ipc/InheritIPCClient.h"
#include "ipc/InheritIPCServer.h"
#include "support/Semaphore.h"
#include "task/TaskRunner.h"

using namespace TESSARIN_COMMON;

namespace {

using Lines = std::vector<std::string>;

// Keeps the calls of an endpoint. Short messages are kept as text, long ones, of one letter all, by their length.
class Owner final : public IIPCDelegate {
 public:
  void OnConnected() override { Add("connected"); }
  void OnDisconnect() override { Add("disconnected"); }
  void OnDataReceived(const char* data, std::uint32_t length) override {
    EXPECT_EQ(data[length], '\0');
    const bool whole = std::string_view(data, length).find_first_not_of(data[0]) == std::string_view::npos;
    Add(length < 64 ? data : std::to_string(length) + (whole ? "" : " broken"));
  }
  void OnErrorReport(std::int32_t code, const char*) override { Add("error " + std::to_string(code)); }

  // Waits until so many calls have come, and gives them all.
  Lines Calls(std::size_t count) {
    std::unique_lock lock(mutex_);
    added_.wait_for(lock, std::chrono::seconds(60), [&] { return calls_.size() >= count; });
    return calls_;
  }

 private:
  void Add(std::string call) {
    const std::lock_guard lock(mutex_);
    calls_.push_back(std::move(call));
    added_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable added_;
  Lines calls_;
};

class Endpoint : public testing::Test {
 protected:
  Endpoint() {
    server_.SetDelegate(&serverOwner_);
    client_.SetDelegate(&clientOwner_);
  }
  void StartBoth() {
    server_.Start();
    ASSERT_TRUE(client_.Start(10));
    ASSERT_EQ(serverOwner_.Calls(1), Lines{"connected"});
  }
  // A client that sends bytes of its own making.
  std::unique_ptr<NamedPipeClient> BareClient() {
    auto client = std::make_unique<NamedPipeClient>(name_);
    client->SetSleep([](auto) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
    EXPECT_TRUE(client->Connect(5000));
    return client;
  }

  const std::string name_ = support::UniquePipeName();
  Owner serverOwner_;
  Owner clientOwner_;
  IPCServer server_{name_};
  IPCClient client_{name_, IpcEndpoint::kFramed};
};

bool SendText(IpcEndpoint& endpoint, const std::string& text) {
  return endpoint.Send(text.data(), static_cast<std::uint32_t>(text.size()));
}

TEST_F(Endpoint, ABadFrameEndsTheSessionAndTheNextClientIsServed) {
  using namespace std::string_literals;
  const std::string cases[] = {
      "\x05\x00"s,                   // half a prefix
      "\x05\x00\x00\x00half"s,       // half a body
      "\xFF\xFF\xFF\xFFx"s,          // longer than anything
      "\x01\x00\x00\x00y\x09\x00"s,  // one frame, and half of the next
  };
  ASSERT_TRUE(server_.Start());
  std::size_t calls = 0;
  for (const auto& bytes : cases) {
    auto client = BareClient();
    EXPECT_TRUE(client->Send(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
    client->Disconnect();
    calls += bytes.find('y') == bytes.npos ? 2 : 3;
    EXPECT_EQ(serverOwner_.Calls(calls).back(), "disconnected");
  }
  EXPECT_EQ(serverOwner_.Calls(calls)[calls - 2], "y");
}

TEST_F(Endpoint, ASendWithNobodyConnectedIsLost) {
  ASSERT_TRUE(server_.Start());
  EXPECT_FALSE(SendText(server_, "early"));
  EXPECT_FALSE(SendText(client_, "early"));
  StartBoth();
  EXPECT_TRUE(SendText(server_, "now"));
  EXPECT_EQ(clientOwner_.Calls(2), (Lines{"connected", "now"}));
}

// Answers on a runner, in the order of the questions; the last one takes until it is let go.
class SlowInTheEnd final : public IIPCDelegate {
 public:
  explicit SlowInTheEnd(IpcEndpoint& endpoint) : endpoint_(endpoint) { runner_.StartRunner(); }
  ~SlowInTheEnd() {
    letGo.release();
    runner_.StopRunner();
  }
  void OnConnected() override {}
  void OnDisconnect() override {}
  void OnErrorReport(std::int32_t, const char*) override {}
  void OnDataReceived(const char* data, std::uint32_t length) override {
    runner_.PostTask({}, [this, question = std::string(data, length)] {
      if (question == "z") letGo.acquire();
      SendText(endpoint_, question);
    });
  }

  support::Semaphore letGo;

 private:
  IpcEndpoint& endpoint_;
  TESSARIN_TASK::TaskRunner runner_{TESSARIN_TASK::TaskRunner::kNormal};
};

TEST_F(Endpoint, AnswersToABurstComeInOrderAndDoNotWaitForTheSlowOneBehindThem) {
  SlowInTheEnd owner(server_);
  server_.SetDelegate(&owner);
  ASSERT_TRUE(server_.Start());
  const auto client = BareClient();
  std::string burst;
  for (char c = 'a'; c <= 'z'; ++c) {
    const std::string body(c == 'm' ? 40'000 : 1, c);  // a large one does not go with the others
    burst.append({static_cast<char>(body.size() & 0xFF), static_cast<char>(body.size() >> 8), '\0', '\0'}).append(body);
  }
  const auto last = static_cast<std::uint32_t>(burst.size() - 5);
  for (int round = 0; round < 50; ++round) {
    ASSERT_TRUE(client->Send(burst.data(), static_cast<std::uint32_t>(burst.size())));
    ASSERT_EQ(ipc_test::ReadText(*client, last), burst.substr(0, last));
    owner.letGo.release();
    ASSERT_EQ(ipc_test::ReadText(*client, 5), burst.substr(last));
  }
  server_.Stop();
}

TEST_F(Endpoint, BothSidesMayWriteMegabytesAtOnce) {
  StartBoth();
  const std::string block(5'000'000, 'm');
  const auto write = [&](IpcEndpoint& endpoint) {
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(SendText(endpoint, block));
  };
  std::thread other([&] { write(client_); });
  write(server_);
  other.join();
  Lines expected(4, std::to_string(block.size()));
  expected[0] = "connected";
  EXPECT_EQ(serverOwner_.Calls(4), expected);
  EXPECT_EQ(clientOwner_.Calls(4), expected);
}

TEST_F(Endpoint, AStopEndsTheSessionAndTheServerCanStartAgain) {
  StartBoth();
  EXPECT_TRUE(server_.Stop());
  EXPECT_EQ(serverOwner_.Calls(2), (Lines{"connected", "disconnected"}));
  EXPECT_EQ(clientOwner_.Calls(4).back(), "disconnected");  // after two reports
  ASSERT_TRUE(server_.Start());
  EXPECT_FALSE(server_.Start());
  const auto client = BareClient();
  EXPECT_EQ(serverOwner_.Calls(3).size(), 3u);
}

TEST_F(Endpoint, AServerThatWaitsForAClientOrHasNoPipeEndsQuietly) {
  for (int i = 0; i < 20; ++i) {
    IPCServer server(i < 19 ? name_ : "no such folder/and no pipe");
    EXPECT_FALSE(server.Start()) << "without a delegate";
    server.SetDelegate(&serverOwner_);
    EXPECT_TRUE(server.Start());
  }
  EXPECT_EQ(serverOwner_.Calls(0), Lines{});
}

TEST_F(Endpoint, AClientThatStopsHearsOfItOnceAndIsSilentAfterwards) {
  StartBoth();
  EXPECT_TRUE(client_.Stop());
  EXPECT_FALSE(client_.Stop());
  Lines calls = clientOwner_.Calls(3);
  std::erase(calls, "error -1009");  // the reader may still have told of its wake-up
  EXPECT_EQ(calls, (Lines{"connected", "disconnected", "disconnected"}));
  EXPECT_EQ(serverOwner_.Calls(2), (Lines{"connected", "disconnected"}));
  EXPECT_TRUE(client_.Start(10));
  EXPECT_EQ(serverOwner_.Calls(3).size(), 3u);
}

TEST_F(Endpoint, ARawClientTakesBytesAsTheyCome) {
  NamedPipeServer server(name_);
  IPCClient client(name_, 2);
  client.SetDelegate(&clientOwner_);
  ASSERT_TRUE(server.Open());
  ASSERT_TRUE(client.Start(0));
  ASSERT_TRUE(server.WaitConnect());
  EXPECT_TRUE(server.Send("\x01\x02", 2));
  EXPECT_EQ(clientOwner_.Calls(2), (Lines{"connected", "\x01\x02"}));
  EXPECT_TRUE(SendText(client, "raw"));
  EXPECT_EQ(ipc_test::ReadText(server, 3), "raw");
}

TEST_F(Endpoint, AnInheritedPairHasOneSession) {
  const auto [serverEnd, clientEnd] = support::MakePipePair();
  InheritIPCServer server(serverEnd);
  server.SetDelegate(&serverOwner_);
  InheritIPCClient client(clientEnd);
  client.SetDelegate(&clientOwner_);
  ASSERT_TRUE(server.Start());
  ASSERT_TRUE(client.Start());
  EXPECT_TRUE(SendText(client, "to server"));
  EXPECT_EQ(serverOwner_.Calls(2), (Lines{"connected", "to server"}));
  EXPECT_TRUE(SendText(server, "to client"));
  EXPECT_EQ(clientOwner_.Calls(2), (Lines{"connected", "to client"}));
  EXPECT_TRUE(client.Stop());
  EXPECT_EQ(serverOwner_.Calls(5).back(), "disconnected");  // after two reports
  EXPECT_TRUE(server.Stop());
  EXPECT_FALSE(client.Start());
}

}  // namespace
