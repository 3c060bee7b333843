#include <gmock/gmock.h>

#include <iterator>
#include <sstream>

#include "ScriptedServer.h"
#include "support/Process.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using support::Process;
using namespace testing;

const std::string kProgram = support::BesideTest("ravoctl");

// What the command prints when it succeeds, and what it says when it fails, with this code.
std::string Output(const std::vector<std::string>& arguments) {
  Process ctl(kProgram, arguments);
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
  return ctl.Out();
}
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
  EXPECT_EQ(Output({"call", "SetBackgroundImage", arguments, "--pipe", server.Name()}), "{\"answer\":\"*\"}\n");
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

TEST(Ravoctl, StatusShowsTheStateReadably) {
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    self.Answer(request, R"({"serverState":{"myUid":"ann","isJoinMeeting":true,"roomId":"blue"},
      "streamInfo":[{"sid":"s1","uid":"bob","streamType":0,"resolutions":[{"width":64,"height":48,"frameRate":15}]}],
      "subscribeStatus":{"maxSubscribingNumber":9,"subscribed":["s1","s2"]}})");
  });
  const std::string status = Output({"--pipe", server.Name(), "status"});
  for (const char* part : {"blue", "s1 s2", "64x48@15", "bob"}) EXPECT_THAT(status, HasSubstr(part));
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
    const std::string text = Output(arguments);
    for (const char* part : parts) EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST(Ravoctl, CallGoesOnUntilTheEventThatItIsToWaitFor) {
  ScriptedServer server([](ScriptedServer& self, const Request& request) {
    if (request.key == "connect") self.SendEvent("Late", "[\"of the start\"]");
    self.Answer(request, "null");
    self.SendEvent("UserJoin", "[\n\t\"ann\",\t0\n]");
    if (request.key != "connect") self.SendEvent("Late", "[7]");
  });
  EXPECT_THAT(Output({"--pipe", server.Name(), "call", "SetAecOption", "[1]", "--until", "LATE"}),
              AllOf(StartsWith("null\n"), HasSubstr("{\"event\":\"USER_JOIN\",\"content\":[\"ann\",0]}\n"),
                    EndsWith("{\"event\":\"LATE\",\"content\":[7]}\n")));
  EXPECT_THAT(Failure({"--pipe", server.Name(), "--timeout", "1", "call", "SetFps", "[1]", "--until", "NEVER"}),
              HasSubstr("NEVER has not come"));
}

}  // namespace
