#include "PipeFixture.h"

#include <thread>

using namespace TESSARIN_COMMON;
using ipc_test::ReadText;
using ipc_test::Reports;
using ipc_test::WaitForEnd;
using Lines = std::vector<std::string>;

namespace {

using NamedPipeTest = ipc_test::PipeTest;

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

// Each use of an end whose peer has gone, one after the other, the posted read first.
void ExpectGone(NamedPipe& end, Reports& reports, const Lines& texts) {
  EXPECT_EQ(WaitForEnd(end), -2);
  EXPECT_EQ(reports.Take(), (Lines{texts[0], "system"}));
  char byte = 0;
  EXPECT_FALSE(end.RecvData(&byte, 1));
  EXPECT_EQ(reports.Take(), (Lines{texts[1], "system"}));
  EXPECT_FALSE(end.Send("x", 1));
  EXPECT_EQ(reports.Take(), (Lines{texts[2], "system"}));
}

TEST_F(NamedPipeTest, AnEndHearsThatItsPeerHasGone) {
  char byte = 0;
  ConnectBoth();
  ASSERT_TRUE(server_.RecvData(&byte, 1));
  EXPECT_TRUE(client_.Disconnect());
  ExpectGone(server_, serverReports_,
             {"-2006 server pipe wait receive data failed.", "-2005 server pipe recv data failed.",
              "-2004 server pipe send data failed."});
  EXPECT_TRUE(server_.Close());
  ConnectBoth();
  ASSERT_TRUE(client_.RecvData(&byte, 1));
  EXPECT_TRUE(server_.Disconnect());
  EXPECT_TRUE(server_.Close());
  ExpectGone(client_, clientReports_,
             {"-1008 wait receive data failed.", "-1007 client pipe receive data failed.",
              "-1006 client pipe send data failed."});
}

// These have no error of the system behind them, and are reported once.
TEST_F(NamedPipeTest, AClientIsToldOfAUseOutOfTurnAndKnowsItsServersProcess) {
  NamedPipeClient nameless("");
  nameless.SetErrorReporter(&clientReports_);
  EXPECT_FALSE(nameless.Connect(5));
  EXPECT_FALSE(client_.Disconnect());
  EXPECT_EQ(client_.ServerProcessId(), 0u);
  ConnectBoth();
  EXPECT_FALSE(client_.Connect(0));
  EXPECT_EQ(clientReports_.Take(),
            (Lines{"-1001 pipe name is empty.", "-1000 client handle is invalid, no need to disconnect again.",
                   "-1000 client handle is invalid, no need to connect again."}));
  EXPECT_EQ(client_.ServerProcessId(), CurrentProcessId());
  EXPECT_TRUE(client_.Send("x", 1));
  EXPECT_EQ(ReadText(server_, 1), "x");
}

TEST_F(NamedPipeTest, AClientTriesTwiceASecondAndOnceMoreAndSleepsAfterEachTry) {
  const Lines failed{"-1002 wait named pipe timeout.", "system"};
  EXPECT_FALSE(client_.Connect(0));
  EXPECT_EQ(slept_, std::vector<int>{500});
  EXPECT_EQ(clientReports_.Take(), failed);
  slept_.clear();
  EXPECT_FALSE(client_.Connect(1));
  EXPECT_EQ(slept_, (std::vector<int>{500, 500, 500}));
  EXPECT_EQ(clientReports_.Take(), failed);
}

TEST_F(NamedPipeTest, AHandleThatIsNoPipeCannotBeBound) {
  constexpr NamedPipe::Handle kNoPipe = 0x7FFFFFF0;
  NamedPipeServer server(kNoPipe);
  server.SetErrorReporter(&serverReports_);
  EXPECT_FALSE(server.Open());
  EXPECT_EQ(serverReports_.Take(), (Lines{"-2001 server pipe bind to io completion port failed.", "system"}));
  NamedPipeClient client(kNoPipe);
  client.SetErrorReporter(&clientReports_);
  EXPECT_FALSE(client.Connect(0));
  EXPECT_EQ(clientReports_.Take(), (Lines{"-1005 client pipe bind to io completion port failed.", "system"}));
}

TEST_F(NamedPipeTest, AUseBeforeTheOtherEndIsThereFailsAndASendOfNothingIsSilent) {
  EXPECT_EQ(client_.WaitRecvData(), -2);
  EXPECT_EQ(clientReports_.Take(), (Lines{"-1008 wait receive data failed.", "system"}));
  EXPECT_FALSE(server_.Send("x", 1));
  ASSERT_TRUE(server_.Open());
  EXPECT_FALSE(server_.Send(nullptr, 1));
  EXPECT_FALSE(server_.Send("", 0));
  EXPECT_FALSE(server_.RecvData(nullptr, 1));
  EXPECT_EQ(serverReports_.Take(), Lines{});
  EXPECT_FALSE(server_.Send("x", 1));
  EXPECT_EQ(serverReports_.Take(), (Lines{"-2004 server pipe send data failed.", "system"}));
}

// With or without a posted read; the wake-up is reported alone.
TEST_F(NamedPipeTest, ADisconnectWakesTheOwnReader) {
  ConnectBoth();
  char byte = 0;
  ASSERT_TRUE(server_.RecvData(&byte, 1));
  std::thread disconnecter([this] { EXPECT_TRUE(server_.Disconnect()); });
  EXPECT_EQ(WaitForEnd(server_), -1);
  disconnecter.join();
  EXPECT_EQ(serverReports_.Take(), Lines{"-2007 server pipe wait receive data failed."});

  EXPECT_TRUE(client_.Disconnect());
  EXPECT_EQ(client_.WaitRecvData(), -1);
  EXPECT_EQ(clientReports_.Take(), Lines{"-1009 wait receive data failed."});
}

// Else a client that dies at once would leave a server that waits for nobody.
TEST_F(NamedPipeTest, AClientThatLeftBeforeTheWaitForItIsServedAllTheSame) {
  ASSERT_TRUE(server_.Open());
  ASSERT_TRUE(client_.Connect(0));
  ASSERT_TRUE(client_.Send("left", 4));
  ASSERT_TRUE(client_.Disconnect());
  ASSERT_TRUE(server_.WaitConnect());
  EXPECT_EQ(ReadText(server_, 5), "left");
}

TEST_F(NamedPipeTest, ADisconnectEndsTheWaitForAClient) {
  ASSERT_TRUE(server_.Open());
  std::thread waiter([this] { EXPECT_FALSE(server_.WaitConnect()); });
  server_.Disconnect();  // some systems refuse this for a pipe without a client, and report it
  waiter.join();
  const auto reports = serverReports_.Take();
  EXPECT_EQ(std::count(reports.begin(), reports.end(), "-2002 server pipe wait connect failed."), 1);
}

}  // namespace
