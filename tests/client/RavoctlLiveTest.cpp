// ravoctl and a server with the simulated engine, as two processes.
#include <gmock/gmock.h>

#include "../integration/ServerProcess.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

using integration::ServerProcess;
using support::Process;
using testing::ContainsRegex;
using testing::HasSubstr;

constexpr char kRoom[] = R"("sim.pace":{"volumeMs":20,"qualityMs":50,"statsMs":50},"sim.room":{"participants":[)"
                         R"({"userId":"ann","encodings":[{"width":64,"height":48}]}]})";

// What the command prints; it and the server have to end well.
std::string Output(ServerProcess& server, std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--pipe", server.Pipe(), "--timeout", "60"});
  Process ctl(support::BesideTest("ravoctl"), arguments);
  EXPECT_EQ(ctl.Wait(), 0) << ctl.Err();
  EXPECT_EQ(server.Host().Wait(), 0) << server.Host().Err();
  return ctl.Out();
}

TEST(RavoctlLive, ListsDevicesDesktopsAndWindows) {
  ServerProcess devices(R"("sim.devices":[{"type":1,"id":"s1","name":"Löud","isBuiltin":true},)"
                        R"({"type":2,"id":"c1","name":"Eye"}],"sim.levels":[{"type":1,"volume":33}])",
                        "");
  const std::string table = Output(devices, {"devices"});
  EXPECT_THAT(table, HasSubstr("*  speaker  Löud  s1  built-in  33"));
  EXPECT_THAT(table, HasSubstr("*  camera   Eye   c1  -         -"));
  ServerProcess screens(R"("sim.screens":{"desktops":[{"id":1,"x":-1280,"width":1280,"height":720}],)"
                        R"("windows":[{"id":9,"pid":77,"application":"App","title":"A b","width":8,"height":6}]})",
                        "");
  const std::string windows = Output(screens, {"windows"});
  EXPECT_THAT(windows, ContainsRegex("desktop +1 +1280x720-1280.0"));
  EXPECT_THAT(windows, ContainsRegex("window +9 +8x6.0.0 +77 +App +A b"));
}

// Lets the command run until all of this was seen, and stops the server, which ends the command with this code.
void ExpectShown(int code, std::vector<std::string> arguments, const std::vector<const char*>& parts) {
  ServerProcess server(kRoom, "");
  arguments.insert(arguments.end(), {"--pipe", server.Pipe(), "--timeout", "60", "--join", "blue"});
  Process ctl(support::BesideTest("ravoctl"), arguments);
  for (const char* part : parts) EXPECT_TRUE(ctl.WaitForOut(part)) << part << '\n' << ctl.Err();
  server.Host().Interrupt();
  EXPECT_EQ(ctl.Wait(), code) << ctl.Err();
  EXPECT_EQ(server.Host().Wait(), 0) << server.Host().Err();
}

TEST(RavoctlLive, WatchShowsAMeetingThatLives) {
  ExpectShown(0, {"watch", "--text"},
              {"JOIN_CHANNEL_SUCCESS  roomId: \"blue\", uid: \"ravoctl\"", "USER_JOIN  uid: \"ann\"",
               "STREAM_SUBSCRIBED", "FIRST_FRAME_RECEIVED", "AUDIO_VOLUME_CHANGE  volumes: [{\"uid\":\"ann\"",
               "LOCAL_AUDIO_VOLUME_INDICATION", "NETWORK_QUALITY", "ON_SYS_STATS", "NETWORK_BANDWIDTH_ESTIMATION"});
  ServerProcess server(kRoom, "");
  EXPECT_THAT(Output(server, {"watch", "--join", "blue", "--seconds", "1"}),
              testing::EndsWith("{\"event\":\"LEAVE_MEETING_SUCCESS\",\"content\":[]}\n"));
}

TEST(RavoctlLive, TopShowsStreamsAndTheServersLoad) {
  ExpectShown(1, {"top"}, {" requests a second, ", "64x48", "ravo-host"});
}

TEST(RavoctlLive, SnapshotAndRecordJoinAMeetingAndLeaveIt) {
  const support::TempFolder folder;
  const std::string png = folder.Text() + "/s.png";
  const std::string y4m = folder.Text() + "/s.y4m";
  const std::vector<std::vector<std::string>> commands = {
      {"snapshot", "ann_0", png, "--join", "blue"},
      {"record", "ann_0", y4m, "--frames", "10", "--join", "blue", "--as", "bob"},
  };
  for (const auto& arguments : commands) {  // a server each: it ends with its client
    ServerProcess server(R"("sim.room":{"participants":[{"userId":"cid"},{"userId":"ann","encodings":)"
                         R"([{"width":64,"height":48},{"width":128,"height":72}]}]})",
                         "");
    Output(server, arguments);
    const std::string user = arguments[0] == "record" ? "bob" : "ravoctl";
    EXPECT_THAT(server.Calls("JoinRoom"), testing::ElementsAre(testing::AllOf(HasSubstr("\"blue\""), HasSubstr(user))));
    EXPECT_THAT(server.Calls("LeaveRoom"), testing::SizeIs(1));
  }
  const std::string image = folder.Read("s.png");
  EXPECT_THAT(image, testing::StartsWith("\x89PNG\r\n\x1a\n"));
  EXPECT_EQ(image.substr(16, 8), std::string("\0\0\0\x80\0\0\0\x48", 8));  // width and height
  const std::string header = "YUV4MPEG2 W128 H72 F30:1 Ip A1:1 C420jpeg\n";
  const std::string recorded = folder.Read("s.y4m");
  EXPECT_THAT(recorded, testing::StartsWith(header + "FRAME\n"));
  EXPECT_EQ(recorded.size(), header.size() + 10 * (6 + 128 * 72 * 3 / 2));
}

}  // namespace
