#include "Stand.h"

namespace {

class Firing : public stand::Started {};

TEST_F(Firing, BuildsTheArgumentsFromJson) {
  const struct {
    const char* entry;
    const char* arguments;
    const char* event;
  } cases[] = {
      {"OnRtcSdkInit", "[]", "OnRtcSdkInit"},
      {"OnUserJoin", R"(["zoe", 1152921504606846976])", "OnUserJoin zoe 1152921504606846976"},
      {"OnNetworkQuality", R"([{"uid": "zoe", "downlink_quality": 4}, [{"uid": "a"}, {"uid": "b"}]])",
       "OnNetworkQuality zoe 4 2 b"},
      {"OnUserPublishStream", R"([{"roomId": "r", "userId": "zoe", "streamIndex": 1}, 0, 2])",
       "OnUserPublishStream r zoe 1 2"},
      {"OnDeviceAdded", R"([2, [{"deviceId": "x"}], [], [{"deviceId": "y"}, {"deviceId": "z"}]])",
       "OnDeviceAdded 2 [x] [] [y,z]"},
      {"RoomBinaryMessageReceived", R"(["12345"])", "RoomBinaryMessageReceived 5"},
      {"OnUlvoMeriTrack", R"(["e", [{"key": "k"}]])", "OnUlvoMeriTrack e 1 k "},
      {"OnRecordingMuteStateChange", "[true]", "OnRecordingMuteStateChange 1"},
  };
  for (const auto& [entry, arguments, event] : cases) {
    stand::Clear();
    EXPECT_TRUE(SimFire(entry, arguments)) << entry;
    EXPECT_EQ(stand::Count(event), 1) << event;
  }
}

TEST_F(Firing, RefusesWhatDoesNotFit) {
  EXPECT_FALSE(SimFire("OnUserJoin", R"(["zoe"])"));
  EXPECT_FALSE(SimFire("OnUserJoin", R"(["zoe", 1, 2])"));
  EXPECT_FALSE(SimFire("OnUserJoin", R"([1, "zoe"])"));
  EXPECT_FALSE(SimFire("OnUserJoin", "nonsense"));
  EXPECT_FALSE(SimFire("JoinRoom", "[]"));
  EXPECT_FALSE(SimFire("OnVideoCommonFrame", R"(["zoe", {}, ["x"], 1, [1]])"));
  EXPECT_FALSE(SimFire("OnDetectError", "[1]"));  // nobody has registered
}

TEST_F(Firing, ManyThreadsFireAtOnce) {
  stand::Clear();
  EXPECT_EQ(SimFireFromThreads("OnUserLeave", R"(["zoe", 3])", 8, 50), 400);
  EXPECT_EQ(stand::Count("OnUserLeave zoe 3"), 400);
  SimSetParams(R"({"sim.fire": [{"entry": "OnUserLeave", "args": ["yan", 4], "threads": 3, "times": 2}]})");
  EXPECT_TRUE(stand::WaitFor("OnUserLeave yan 4", 6));
}

TEST_F(Firing, PushesAFrameOfTheTestsOwn) {
  const std::uint8_t luma[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  const std::uint8_t chroma[2] = {9, 10};
  const std::uint8_t* const planes[] = {luma, chroma, chroma};
  const std::int64_t strides[] = {4, 2, 2};
  EXPECT_TRUE(SimPushFrame("pix", R"({"width": 4, "height": 2, "rotation": 270, "flip": true})", planes, 3, strides));
  const auto frames = stand::Frames("pix");
  ASSERT_EQ(frames.size(), 1U);
  EXPECT_EQ(frames[0].info.rotation, 270);
  EXPECT_TRUE(frames[0].info.flip);
  EXPECT_EQ(frames[0].planes[0], (std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8}));
}

}  // namespace
