#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "../integration/ServerProcess.h"
#include "../slots/SlotFixture.h"
#include "ScriptedServer.h"
#include "ctl/StreamReading.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using support::Process;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kProgram = support::BesideTest("ravoctl");

TEST(Ravoctl, RefusesWrongUsageBeforeItConnects) {
  const std::vector<std::vector<std::string>> cases = {
      {},
      {"--pipe", "p"},
      {"--pipe", "p", "unknown"},
      {"status"},
      {"--pipe", "p", "call"},
      {"--pipe", "p", "call", "SetFps", "[15"},
      {"--pipe", "p", "call", "SetFps", "[15]", "more"},
      {"--pipe", "p", "status", "--timeout", "soon"},
      {"--pipe", "p", "status", "--timeout"},
      {"--pipe", "p", "status", "--colour"},
      {"--pipe", "p", "attend", "room", "ann", "--subscribe", "some"},
      {"--pipe", "p", "snapshot", "s", "s.png", "--as", "ann"},
      {"--pipe", "p", "record", "s", "s.y4m", "--frames", "0"},
      {"--pipe", "p", "watch", "--as", "ann"},
      {"--pipe", "p", "top", "--rounds", "0"},
      {"--pipe", "p", "top", "--pids", "1,x"},
      {"completion", "fish"},
      {"help", "unknown"},
  };
  for (const auto& arguments : cases) {
    Process ctl(kProgram, arguments);
    EXPECT_EQ(ctl.Wait(), 2) << testing::PrintToString(arguments);
    EXPECT_THAT(ctl.Err(), HasSubstr("ravoctl: "));
    EXPECT_EQ(ctl.Out(), "");
  }
}

TEST(Ravoctl, SaysThatNobodyServes) {
  Process ctl(kProgram, {"--pipe", support::UniquePipeName(), "--timeout", "0", "status"});
  EXPECT_EQ(ctl.Wait(), 1);
  EXPECT_THAT(ctl.Err(), HasSubstr("nobody serves at"));
}

TEST(Ravoctl, CallPrintsTheAnswerAndPassesArgumentsToTheLetter) {
  ScriptedServer server(
      [](ScriptedServer& self, const Request& request) { self.Answer(request, R"({"answer":"*"})"); });
  const std::string arguments = R"(["a \"b\" \\", {"c": "* ?"}, "ä"])";
  Process ctl(kProgram, {"call", "SetBackgroundImage", arguments, "--pipe", server.Name()});
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
  EXPECT_EQ(ctl.Out(), "{\"answer\":\"*\"}\n");
  EXPECT_THAT(server.WaitRequests(1), ElementsAre("set_background_image " + arguments));
}

TEST(Ravoctl, ReportsErrorRepliesAndMissingOnes) {
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    if (request.key == "wrong") self.Answer(request, "no such", TESSARIN_COMMON::kMessageCallResponseError);
  });
  Process wrong(kProgram, {"--pipe", server.Name(), "call", "wrong"});
  EXPECT_EQ(wrong.Wait(), 1);
  EXPECT_THAT(wrong.Err(), HasSubstr("no such"));
  Process silent(kProgram, {"--pipe", server.Name(), "--timeout", "1", "call", "silent"});
  EXPECT_EQ(silent.Wait(), 1);
  EXPECT_THAT(silent.Err(), HasSubstr("silent: no answer within 1 s"));
}

TEST(Ravoctl, WatchPrintsOneLineAnEventUntilTheServerEnds) {
  ScriptedServer server;
  Process ctl(kProgram, {"--pipe", server.Name(), "watch"});
  // The session begins when the program likes; what is sent before is lost.
  for (int i = 0; i < 600 && ctl.Out().empty(); ++i) {
    server.SendEvent("UserJoin", "[\n\t\"ann\",\t1\n]");
    (void)ctl.WaitForOut("\n", std::chrono::milliseconds(100));
  }
  EXPECT_THAT(ctl.Out(), testing::StartsWith("{\"event\":\"USER_JOIN\",\"content\":[\"ann\",1]}\n"));
  server.Stop();
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
}

TEST(Ravoctl, StatusShowsTheStateReadably) {
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    self.Answer(request, R"({"serverState":{"myUid":"ann","isJoinMeeting":true,"roomId":"blue"},
      "streamInfo":[{"sid":"s1","uid":"bob","streamType":0,"resolutions":[{"width":64,"height":48,"frameRate":15}]}],
      "subscribeStatus":{"maxSubscribingNumber":9,"subscribed":["s1","s2"]}})");
  });
  Process ctl(kProgram, {"--pipe", server.Name(), "status"});
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
  for (const char* part : {"blue", "s1 s2", "64x48@15", "bob"}) EXPECT_THAT(ctl.Out(), HasSubstr(part));
}

TEST(Ravoctl, TellsWithoutAServerWhatThereIs) {
  const struct {
    std::vector<std::string> arguments;
    std::vector<const char*> parts;
  } cases[] = {
      {{"methods", "currentvolume"}, {"GetCurrentVolume", "deviceType: int, volume: int"}},
      {{"methods", "--json", "SetFps"},
       {R"([{"group":"Server","name":"SetFps","arguments":"fps: int","reply":"null"}])"}},
      {{"help", "top"}, {"--rounds N", "--pids"}},
      {{"record", "--help"}, {"usage: ravoctl --pipe NAME record SID FILE.y4m"}},
      {{"--help"}, {"completion bash", "Exit codes"}},
      {{"completion", "bash"},
       {"complete -o default -F _ravoctl ravoctl", "--pipe | --png-dir", "watch) words+=' --text --join --as",
        " ShareDesktop ", "help) words+=' call watch"}},
  };
  for (const auto& [arguments, parts] : cases) {
    Process ctl(kProgram, arguments);
    EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
    for (const char* part : parts) EXPECT_THAT(ctl.Out(), HasSubstr(part));
  }
}

TEST(Ravoctl, CallGoesOnUntilTheEventThatItIsToWaitFor) {
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    if (request.key == "connect") self.SendEvent("Late", "[\"of the start\"]");
    self.Answer(request, "null");
    self.SendEvent("UserJoin", "[\"ann\",0]");
    if (request.key != "connect") self.SendEvent("Late", "[7]");
  });
  Process ctl(kProgram, {"--pipe", server.Name(), "call", "SetAecOption", "[1]", "--until", "LATE", "--text"});
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
  EXPECT_THAT(ctl.Out(), testing::StartsWith("null\n"));
  EXPECT_THAT(ctl.Out(), HasSubstr("USER_JOIN  uid: \"ann\", value: 0"));
  EXPECT_THAT(ctl.Out(), testing::EndsWith("LATE  7\n"));
  Process never(kProgram, {"--pipe", server.Name(), "--timeout", "1", "call", "SetFps", "[1]", "--until", "NEVER"});
  EXPECT_EQ(never.Wait(), 1);
  EXPECT_THAT(never.Err(), HasSubstr("NEVER has not come"));
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Ravoctl, SnapshotAndRecordReadTheSlotOfAnotherProcess) {
  slots_test::AddStream("ann", "s");
  std::string path;
  slots_test::VideoFrameSlots slots("test", [&](std::int64_t, const auto& records) { path = records.front().path; });
  const slots_test::TestFrame frame(8, 4, 7);
  slots.UpdateSlot("s", frame.meta, frame.planes);
  ScriptedServer server([&](ScriptedServer& self, const Request& request) {
    self.Answer(request, R"([{"sid":"s","path":")" + path + "\"}]");
  });

  const support::TempFolder folder;
  Process snapshot(kProgram, {"--pipe", server.Name(), "snapshot", "s", folder.Text() + "/s.png"});
  EXPECT_EQ(snapshot.Wait(), 0) << snapshot.Err();
  const std::string png = ReadFile(folder.Path() / "s.png");
  EXPECT_EQ(png.substr(1, 3), "PNG");
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\x08\0\0\0\x04", 8));  // width and height

  Process record(kProgram, {"--pipe", server.Name(), "record", "s", folder.Text() + "/s.y4m", "--frames", "1"});
  EXPECT_EQ(record.Wait(), 0) << record.Err();
  const std::string y4m = ReadFile(folder.Path() / "s.y4m");
  EXPECT_THAT(y4m, testing::StartsWith("YUV4MPEG2 W8 H4 "));
  EXPECT_THAT(y4m, testing::EndsWith(std::string(8 * 4 * 3 / 2, '\x07')));

  Process unknown(kProgram, {"--pipe", server.Name(), "snapshot", "t", folder.Text() + "/t.png"});
  EXPECT_EQ(unknown.Wait(), 1);
  EXPECT_THAT(unknown.Err(), HasSubstr("those that have: s"));
}

TEST(Ravoctl, SnapshotAndRecordJoinAMeetingAndLeaveIt) {
  const support::TempFolder folder;
  const std::string png = folder.Text() + "/s.png";
  const std::string y4m = folder.Text() + "/s.y4m";
  const std::vector<std::vector<std::string>> commands = {
      {"snapshot", "ann_0", png, "--join", "blue"},
      {"record", "ann_0", y4m, "--frames", "10", "--join", "blue", "--as", "bob"},
  };
  for (auto arguments : commands) {  // a server each: it ends with its client
    integration::ServerProcess server(R"("sim.room":{"participants":[{"userId":"cid"},{"userId":"ann","encodings":)"
                                      R"([{"width":64,"height":48},{"width":128,"height":72}]}]})",
                                      "");
    arguments.insert(arguments.end(), {"--pipe", server.Pipe(), "--timeout", "60"});
    Process ctl(kProgram, arguments);
    EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
    EXPECT_EQ(server.Host().Wait(), 0) << server.Host().Err();
    const std::string user = arguments[0] == "record" ? "bob" : "ravoctl";
    EXPECT_THAT(server.Calls("JoinRoom"), ElementsAre(testing::AllOf(HasSubstr("\"blue\""), HasSubstr(user))));
    EXPECT_THAT(server.Calls("LeaveRoom"), testing::SizeIs(1));
  }
  EXPECT_THAT(ReadFile(folder.Path() / "s.png"), testing::StartsWith("\x89PNG\r\n\x1a\n"));
  const std::string header = "YUV4MPEG2 W128 H72 F30:1 Ip A1:1 C420jpeg\n";
  const std::string recorded = ReadFile(folder.Path() / "s.y4m");
  EXPECT_THAT(recorded, testing::StartsWith(header + "FRAME\n"));
  EXPECT_EQ(recorded.size(), header.size() + 10 * (6 + 128 * 72 * 3 / 2));
}

TEST(FrameAge, CountsAcrossTheWrapOfTheStampAndKnowsOtherStamps) {
  EXPECT_EQ(ravo::ctl::FrameAgeMs(1'999'990, 4'000'005), 15);
  EXPECT_EQ(ravo::ctl::FrameAgeMs(7, 2'000'007), 0);
  EXPECT_FALSE(ravo::ctl::FrameAgeMs(7, 60'008));
  EXPECT_FALSE(ravo::ctl::FrameAgeMs(2'000'000, 5));
}

TEST(Percentile, IsAValueOfTheList) {
  std::vector<std::int64_t> values;
  for (int i = 100; i >= 1; --i) values.push_back(i);
  EXPECT_EQ(ravo::ctl::Percentile(values, 50), 50);
  EXPECT_EQ(ravo::ctl::Percentile(values, 99), 99);
  EXPECT_EQ(ravo::ctl::Percentile({3}, 99), 3);
  EXPECT_FALSE(ravo::ctl::Percentile({}, 50));
}

}  // namespace
