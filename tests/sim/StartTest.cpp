#include "Stand.h"

namespace {

using stand::Started;

TEST(Unstarted, CallBeforeTheStartIsReported) {
  SetFps(30);
  EXPECT_EQ(SimViolationCount(), 1);
}

TEST_F(Started, ReportsWhatComesOutOfOrderAndNothingElse) {
  EXPECT_TRUE(stand::WaitFor("OnRtcSdkInit"));
  SetFps(30);
  ServerOptionSetRTCParams("{}");  // options may come again
  EXPECT_EQ(SimViolationCount(), 0);
  OnUserJoin(nullptr);
  VemoraInit(3, 0);
  VemoraInitRtc();
  EXPECT_EQ(SimViolationCount(), 3);
  stand::Register();
}

TEST_F(Started, ReportsParametersAndFilesThatItDoesNotTake) {
  const auto before = SimViolationCount();
  EXPECT_TRUE(SimSetParams(R"({"rtc.any": 1, "sim.nothing": 1, "sim.room": {"joinDelayMs": "soon"}})"));
  EXPECT_EQ(SimViolationCount(), before + 2);
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "wide", "encodings": [{"width": 99999}]}]}})");
  SimSetParams(R"({"sim.camera": {"encoding": {"frameRate": 0}}})");
  Join(R"({"userId": "lost", "video": "no-such-file.y4m"})");
  Watch("lost_0", 320, 180, 60);
  EXPECT_TRUE(stand::WaitFor("OnVideoCommonFrame lost"));  // a pattern stands in
  EXPECT_EQ(SimViolationCount(), before + 5);
  EXPECT_FALSE(SimSetParams("[]"));
  EXPECT_FALSE(SimSetParams(""));
}

TEST_F(Started, RefusesToFireWhatDoesNotFit) {
  const std::pair<const char*, const char*> cases[] = {
      {"OnUserJoin", R"(["zoe"])"}, {"OnUserJoin", R"(["zoe", 1, 2])"},
      {"OnUserJoin", "nonsense"},   {"OnUserJoin", R"([1, "zoe"])"},
      {"JoinRoom", "[]"},           {"OnVideoCommonFrame", R"(["zoe", {}, ["x"], 1, [1]])"},
      {"OnDetectError", "[1]"},  // nobody has registered
  };
  for (const auto& [entry, arguments] : cases) EXPECT_FALSE(SimFire(entry, arguments)) << entry << arguments;
}

TEST_F(Started, PushesAFrameOfTheTestsOwn) {
  const std::uint8_t bytes[8]{};
  const std::uint8_t* const planes[] = {bytes, bytes, bytes};
  const std::int64_t strides[] = {4, 2, 2};
  EXPECT_TRUE(SimPushFrame("pix", R"({"width": 4, "height": 2, "rotation": 270})", planes, 3, strides));
  EXPECT_TRUE(stand::WaitFor("OnVideoCommonFrame pix"));
}

TEST_F(Started, NothingCallsBackAfterDestroyServer) {
  Join(R"({"userId": "ann"})");
  Watch("ann_0", 64, 36, 60);
  ASSERT_TRUE(stand::WaitFor("OnVideoCommonFrame ann"));
  DestroyServer();
  const int events = stand::Count("");
  EXPECT_FALSE(SimFire("OnUserJoin", R"(["late", 0])"));
  EXPECT_EQ(SimFireFromThreads("OnUserJoin", R"(["late", 0])", 4, 10), 0);
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "late"}]}})");
  EXPECT_EQ(stand::Count(""), events);
}

}  // namespace
