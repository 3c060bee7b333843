// Requests that cannot be read: a client that has lost its way. The server says so in its log and is gone.
#include "RawLink.h"
#include "ServerTest.h"

namespace integration {
namespace {

using testing::IsEmpty;
using testing::Not;

struct Unreadable {
  const char* name;
  std::string body;
  std::string logLine;
};

void PrintTo(const Unreadable& request, std::ostream* out) {
  *out << request.name;
}

class FatalTest : public testing::TestWithParam<Unreadable> {};

TEST_P(FatalTest, EndsTheServerWithALineInTheLogAndNoReply) {
  ServerProcess server("", "");
  ASSERT_TRUE(server.WaitForCalls("SetRtcRuntimeParameter", 1)) << server.Host().Err();
  RawLink link(server.Pipe());
  ASSERT_TRUE(link.Connected());
  EXPECT_TRUE(link.Send(RawLink::Framed(GetParam().body)));

  EXPECT_EQ(link.ReceiveReply().value_or("closed"), "closed");
  const auto code = server.Host().Wait();
  ASSERT_TRUE(code) << "still there";
  EXPECT_NE(*code, 0);
  EXPECT_THAT(server.LogLines(GetParam().logLine), Not(IsEmpty()));
}

INSTANTIATE_TEST_SUITE_P(
    All, FatalTest,
    testing::Values(
        Unreadable{"BodyIsNoJson", "no JSON",
                   "[handleIpcData]: parse IPCData error exception:Parse json string fail. err=Invalid value."},
        Unreadable{"BodyIsNoObject", "[]", "[handleIpcData]: parse IPCData error exception:not object"},
        Unreadable{"TaskIdIsNoInteger", R"({"method_name":{"message_key":"connect","taskId":1.5},"content":"[]"})",
                   "[handleIpcData]: parse IPCData error exception:data_.f.flags & kInt64Flag"},
        Unreadable{"ContentIsNoJson", RawLink::Request("connect", "no JSON", 5),
                   "handleIpcData recv msgType:Connect,taskId:5,content:no JSON"},
        Unreadable{"ContentIsEmpty", RawLink::Request("connect", "", 6),
                   "handleIpcData recv msgType:Connect,taskId:6,content:"},
        Unreadable{"ArgumentIsNoInteger", RawLink::Request("set_fps", "[1.5]", 7),
                   "[handleIpcData]: 7 of SetFps cannot be handled, the process ends: data_.f.flags & kInt64Flag"},
        Unreadable{
            "LoneArgumentIsTooLarge", RawLink::Request("set_aec_option", "9223372036854775808", 8),
            "[handleIpcData]: 8 of SetAecOption cannot be handled, the process ends: data_.f.flags & kInt64Flag"},
        Unreadable{
            "ListIsWrongInBothPlaces", RawLink::Request("set_sub_channels", R"([[{"channelName":5}]])", 9),
            "[handleIpcData]: 9 of SetSubChannels cannot be handled, the process ends: type unmatch[[0].channelName]"},
        Unreadable{"RecordIsWrongInBothPlaces", RawLink::Request("add_ignore_window", R"([{"windowHandle":5},1])", 10),
                   "parse obj error: IsObject()[ignoreType],AddIgnoreWindow,10"},
        Unreadable{"FlagIsWrongInBothPlaces", RawLink::Request("set_video_output_mode", R"([[{"isScreen":"x"}]])", 11),
                   "the process ends: wish bool, but not bool or int[[0].isScreen]"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace integration
