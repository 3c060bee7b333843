#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "../integration/ServerProcess.h"
#include "ScriptedServer.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using support::Process;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kProgram = support::BesideTest("ravoctl");

// What the command says when it fails, with this code.
std::string Failure(const std::vector<std::string>& arguments, int code = 1) {
  Process ctl(kProgram, arguments);
  EXPECT_EQ(ctl.Wait(), code) << testing::PrintToString(arguments);
  return ctl.Err();
}

TEST(Ravoctl, RefusesWrongUsageBeforeItConnects) {
  const char* const cases[] = {"--pipe p",
                               "--pipe p unknown",
                               "status",
                               "--pipe p call",
                               "--pipe p call SetFps [15",
                               "--pipe p call SetFps [15] more",
                               "--pipe p status --timeout soon",
                               "--pipe p status --colour",
                               "--pipe p attend room ann --subscribe some",
                               "--pipe p snapshot s s.png --as ann",
                               "--pipe p record s s.y4m --frames 0",
                               "--pipe p top --pids 1,x",
                               "completion fish"};
  for (const char* line : cases) {
    std::istringstream words(line);
    const std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
    EXPECT_THAT(Failure(arguments, 2), HasSubstr("ravoctl: "));
  }
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

TEST(Ravoctl, ReportsWhatDoesNotSucceed) {
  EXPECT_THAT(Failure({"--pipe", support::UniquePipeName(), "--timeout", "0", "status"}),
              HasSubstr("nobody serves at"));
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    if (request.key == "wrong") self.Answer(request, "no such", TESSARIN_COMMON::kMessageCallResponseError);
    if (request.key == "get_share_memory_info") self.Answer(request, R"([{"sid":"s","path":"none"}])");
  });
  EXPECT_THAT(Failure({"--pipe", server.Name(), "call", "wrong"}), HasSubstr("no such"));
  EXPECT_THAT(Failure({"--pipe", server.Name(), "--timeout", "1", "call", "silent"}),
              HasSubstr("silent: no answer within 1 s"));
  EXPECT_THAT(Failure({"--pipe", server.Name(), "snapshot", "t", "t.png"}), HasSubstr("those that have: s"));
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
  EXPECT_THAT(Failure({"--pipe", server.Name(), "--timeout", "1", "call", "SetFps", "[1]", "--until", "NEVER"}),
              HasSubstr("NEVER has not come"));
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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
  const std::string image = ReadFile(folder.Path() / "s.png");
  EXPECT_THAT(image, testing::StartsWith("\x89PNG\r\n\x1a\n"));
  EXPECT_EQ(image.substr(16, 8), std::string("\0\0\0\x80\0\0\0\x48", 8));  // width and height
  const std::string header = "YUV4MPEG2 W128 H72 F30:1 Ip A1:1 C420jpeg\n";
  const std::string recorded = ReadFile(folder.Path() / "s.y4m");
  EXPECT_THAT(recorded, testing::StartsWith(header + "FRAME\n"));
  EXPECT_EQ(recorded.size(), header.size() + 10 * (6 + 128 * 72 * 3 / 2));
}

}  // namespace
