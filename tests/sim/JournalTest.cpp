#include <chrono>
#include <filesystem>
#include <fstream>

#include "Stand.h"

namespace {

using stand::Started;

std::vector<std::string> LinesOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::string LastCall(const char* entry) {
  char buffer[1024];
  SimLastCall(entry, buffer, sizeof buffer);
  return buffer;
}

TEST(Journal, KeepsTheLinesBeforeItsFileIsKnown) {
  const auto path = std::filesystem::temp_directory_path() / "ravo-sim-journal-test.jsonl";
  std::filesystem::remove(path);
  ServerOptionSetAppId("app \"one\"");
  ServerOptionSetRTCParams("no object");
  SimSetParams((R"({"sim.journal": ")" + path.generic_string() + R"("})").c_str());
  VemoraInit(2, 0);
  const std::vector<std::string> expected = {
      R"({"entry":"ServerOptionSetAppId","args":["app \"one\""]})",
      R"({"entry":"ServerOptionSetRTCParams","args":["no object"]})",
      R"({"entry":"VemoraInit","args":[2,0]})",
      R"({"violation":"VemoraInit takes 3 and 0"})",
  };
  EXPECT_EQ(LinesOf(path), expected);
}

TEST_F(Started, JournalsTheArgumentsOfEveryForm) {
  const JoinUser user{"me", "extra"};
  const JoinRoomOption option{16, 0, true, true, false};
  JoinRoom("token", "room", &user, &option);
  EXPECT_EQ(LastCall("JoinRoom"), R"({"entry":"JoinRoom","args":["token","room",{"userId":"me","extraInfo":"extra"},)"
                                  R"({"channelProfile":16,"reserved":0,"flag1":true,"flag2":true,"flag3":false}]})");

  const EngineChannel channels[] = {{"a", 50}, {"b", -1}};
  SetSubChannels(channels, 2);
  EXPECT_EQ(LastCall("SetSubChannels"), R"({"entry":"SetSubChannels","args":[[{"channelName":"a","volumeScale":50},)"
                                        R"({"channelName":"b","volumeScale":-1}]]})");

  const char* const names[] = {"x", "y"};
  ServerOptionSetDeviceNameBlackList(names, 2);
  EXPECT_EQ(LastCall("ServerOptionSetDeviceNameBlackList"),
            R"({"entry":"ServerOptionSetDeviceNameBlackList","args":[["x","y"]]})");

  const std::int32_t handle[] = {1, 2};
  const EngineIgnoreWindowParam window{1, "hwnd", handle, 2, 0, 7, names, 1, 0, 9};
  AddIgnoreWindow(&window, 3);
  EXPECT_EQ(LastCall("AddIgnoreWindow"),
            R"({"entry":"AddIgnoreWindow","args":[{"ignoreType":1,"handleType":"hwnd","handleData":[1,2],)"
            R"("ignoreTypeByPid":0,"windowPid":7,"windowTitles":["x"],"windowLevel":0,"windowHandleIntValue":9},3]})");

  SetVideoDigitalZoomConfig(1, 2.5F);
  EXPECT_EQ(LastCall("SetVideoDigitalZoomConfig"), R"({"entry":"SetVideoDigitalZoomConfig","args":[1,2.5]})");
  ScreenRect rect{};
  GetCaptureRect(0, &rect);
  EXPECT_EQ(LastCall("GetCaptureRect"), R"({"entry":"GetCaptureRect","args":[0,"memory"]})");
}

TEST_F(Started, CountsCallsAndWaitsForThem) {
  const auto before = SimCallCount("SetFps");
  SetFps(30);
  EXPECT_EQ(SimCallCount("SetFps"), before + 1);
  EXPECT_TRUE(SimWaitForCall("SetFps", before + 1, stand::kBoundMs));
  EXPECT_FALSE(SimWaitForCall("SetFps", before + 2, 1));
  EXPECT_EQ(SimCallCount("NoSuchEntry"), 0);
}

TEST_F(Started, EntryAnswersWithTheNumberAskedForAndDoesNothing) {
  SimSetParams(R"({"sim.results": {"EnableLocalAudio": -3}, "sim.delay": {"SetAecOption": 60}})");
  EXPECT_EQ(EnableLocalAudio(true), -3);
  EXPECT_TRUE(IsMuteLocalAudio());
  SimSetParams(R"({"sim.results": {"EnableLocalAudio": null}})");
  EXPECT_EQ(EnableLocalAudio(true), 0);
  EXPECT_FALSE(IsMuteLocalAudio());

  const auto start = std::chrono::steady_clock::now();
  SetAecOption(1);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(60));
}

TEST_F(Started, ReportsParametersThatItDoesNotTake) {
  const auto before = SimViolationCount();
  EXPECT_TRUE(SimSetParams(R"({"rtc.any": 1, "sim.nothing": 1, "sim.room": {"joinDelayMs": "soon"}})"));
  EXPECT_EQ(SimViolationCount(), before + 2);
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "wide", "encodings": [{"width": 99999}]}]}})");
  SimSetParams(R"({"sim.camera": {"encoding": {"frameRate": 0}}})");
  EXPECT_EQ(SimViolationCount(), before + 4);
  EXPECT_FALSE(SimSetParams("[]"));
  EXPECT_FALSE(SimSetParams(""));
}

}  // namespace
