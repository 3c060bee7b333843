#include "PipeFixture.h"

#include <atomic>
#include <cstring>
#include <thread>

#include "support/LogCapture.h"

using namespace TESSARIN_COMMON;
using ipc_test::ReadOnce;
using ipc_test::ReadText;

namespace {

class NamedPipeTest : public ipc_test::PipeTest {};

TEST_F(NamedPipeTest, BytesPassBothWaysInOrder) {
  ConnectBoth();
  EXPECT_TRUE(client_.Send("ab", 2));
  EXPECT_TRUE(client_.SendFrame(std::string_view("cd"), std::string_view("ef")));
  EXPECT_EQ(ReadText(server_, 3), "abc");
  EXPECT_EQ(ReadText(server_, 3), "def");
  EXPECT_TRUE(server_.Send("back", 4));
  EXPECT_EQ(ReadText(client_, 4), "back");
}

TEST_F(NamedPipeTest, AReadStaysPostedWhileNothingComes) {
  ConnectBoth();
  char byte = 0;
  ASSERT_TRUE(server_.RecvData(&byte, 1));
  EXPECT_EQ(server_.WaitRecvData(), 0);
  EXPECT_EQ(server_.WaitRecvData(), 0);
  ASSERT_TRUE(client_.Send("x", 1));
  std::int32_t result = 0;
  while (result == 0) result = server_.WaitRecvData();
  EXPECT_EQ(result, 1);
  EXPECT_EQ(byte, 'x');
}

TEST_F(NamedPipeTest, APeerThatLeavesInTheMiddleGivesAShortRead) {
  ConnectBoth();
  ASSERT_TRUE(client_.Send("half", 4));
  ASSERT_TRUE(client_.Disconnect());
  char buffer[8] = {};
  EXPECT_EQ(ReadOnce(server_, buffer, 8), 4);
  EXPECT_STREQ(buffer, "half");
}

TEST_F(NamedPipeTest, ASecondClientFindsNobodyUntilTheServerOpensAnew) {
  ConnectBoth();
  NamedPipeClient second(name_);
  second.SetSleep([](auto) {});
  EXPECT_FALSE(second.Connect(0));
  server_.Disconnect();
  server_.Close();
  EXPECT_FALSE(second.Connect(0));
  ASSERT_TRUE(server_.Open());
  EXPECT_TRUE(second.Connect(0));
  EXPECT_TRUE(server_.WaitConnect());
  EXPECT_TRUE(second.Send("2", 1));
  EXPECT_EQ(ReadText(server_, 1), "2");
}

TEST_F(NamedPipeTest, ASenderNeitherBlocksForASlowPeerNorKeepsMoreThanTheBound) {
  ConnectBoth();
  const support::LogCapture log;
  std::vector<std::uint32_t> block(256 * 1024);
  std::uint32_t accepted = 0;
  for (bool sent = true; sent; accepted += sent ? 1 : 0) {
    for (auto& word : block) word = accepted;
    sent = server_.Send(block.data(), static_cast<std::uint32_t>(block.size() * sizeof block[0]));
    ASSERT_LT(accepted, 80u);
  }
  EXPECT_GE(accepted, kMaxPendingBytes / (block.size() * sizeof block[0]));
  EXPECT_TRUE(log.Has("pipe send refused, length:1048576, the peer leaves too much unread, bound:67108864"));
  EXPECT_EQ(serverReports_.Take(), std::vector<std::string>{});

  // Now the peer reads, and all that was accepted comes, whole and in order.
  std::atomic<bool> done{false};
  std::thread reader([&] {
    char byte = 0;
    server_.RecvData(&byte, 1);
    while (!done && server_.WaitRecvData() == 0) {
    }
  });
  std::uint32_t wrong = 0;
  for (std::uint32_t expected = 0; expected < accepted; ++expected) {
    std::uint32_t got = 0;
    const auto size = static_cast<std::uint32_t>(block.size() * sizeof block[0]);
    for (auto* at = reinterpret_cast<char*>(block.data()); got < size;) {
      const std::int32_t part = ReadOnce(client_, at + got, size - got);
      ASSERT_GT(part, 0);
      got += static_cast<std::uint32_t>(part);
    }
    for (const auto word : block) wrong += word != expected;
  }
  EXPECT_EQ(wrong, 0u);
  EXPECT_TRUE(server_.Send("x", 1));
  done = true;
  reader.join();
}

// What is still on its way when the connection ends must outlive neither the test nor the system's use of it.
TEST_F(NamedPipeTest, AConnectionMayEndWithReadsAndWritesInFlight) {
  for (int round = 0; round < 3; ++round) {
    ConnectBoth();
    const std::vector<char> block(1 << 20);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(server_.Send(block.data(), static_cast<std::uint32_t>(block.size())));
    auto buffer = std::make_unique<char[]>(64);
    ASSERT_TRUE(server_.RecvData(buffer.get(), 64));
    server_.Disconnect();
    while (server_.WaitRecvData() >= 0) {
    }
    buffer.reset();
    server_.Close();
    client_.Disconnect();
  }
}

// Collects text, and answers when it has the length expected.
struct RawReader final : IIpcDataNotify {
  RawReader(NamedPipe& end, std::size_t length) : pipe(end), expected(length) {}
  void OnIpcData(const char* data, std::uint32_t length) override {
    EXPECT_EQ(std::strlen(data), length);
    text += data;
    if (text.size() == expected) answered = pipe.Send("!", 1);
  }
  NamedPipe& pipe;
  const std::size_t expected;
  std::string text;
  bool answered = false;
};

TEST_F(NamedPipeTest, TheRawLoopHandsOnWhatComesUntilThePeerGoes) {
  ConnectBoth();
  const std::string sent = "one two " + std::string(200'000, 'a');
  std::thread writer([&] {
    EXPECT_TRUE(client_.Send(sent.data(), 4));
    EXPECT_TRUE(client_.Send(sent.data() + 4, static_cast<std::uint32_t>(sent.size() - 4)));
    char byte = 0;
    EXPECT_EQ(ReadOnce(client_, &byte, 1), 1);  // sends on what had to wait, until the other side has all
    EXPECT_TRUE(client_.Disconnect());
  });
  RawReader reader(server_, sent.size());
  server_.RecvRaw(&reader);
  writer.join();
  EXPECT_EQ(reader.text, sent);
  EXPECT_TRUE(reader.answered);
}

}  // namespace
