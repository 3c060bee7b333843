#include "Stand.h"

namespace {

using stand::Count;
using stand::WaitFor;

class Pulse : public stand::Started {
 protected:
  void TearDown() override {
    Started::TearDown();
    SimSetParams(R"({"sim.pace": {"volumeMs": 200, "qualityMs": 2000, "statsMs": 2000}})");
  }

  // What was due before this has been told when it returns.
  static void LetTimePass() {
    GetDesktopThumbnailAsyn(++width_, 1);
    ASSERT_TRUE(WaitFor("OnDesktopThumbnail 2 1 sim-thumbnail:1:" + std::to_string(width_) + "x1"));
  }

 private:
  static inline int width_ = 0;
};

TEST_F(Pulse, OthersSpeakInTurnsWhileTheNetworkAndTheMachineAreTold) {
  SimSetParams(R"({"sim.pace": {"volumeMs": 1, "qualityMs": 1, "statsMs": 1},
                   "sim.room": {"participants": [{"userId": "ivy"}, {"userId": "jan"},
                                                 {"userId": "jan", "streamIndex": 1}]}})");
  Join("me");
  EXPECT_TRUE(WaitFor("OnAudioVolumeIndication ivy"));
  EXPECT_TRUE(WaitFor("OnAudioVolumeIndication jan"));
  EXPECT_NE(stand::WaitForPrefix("OnNetworkQuality me 1 "), "");
  EXPECT_TRUE(WaitFor("OnSysStats 4", 3));
  EXPECT_TRUE(WaitFor("OnNetworkBandwidthEstimationResult", 3));
}

TEST_F(Pulse, OwnVolumeFollowsTheSwitchAndTheMute) {
  SimSetParams(R"({"sim.pace": {"volumeMs": 1}, "sim.room": {"participants": [{"userId": "ivy"}]}})");
  Join("me");
  EXPECT_TRUE(WaitFor("OnLocalAudioVolumeIndication me 0"));
  EnableLocalAudio(true);
  EXPECT_TRUE(WaitFor("OnLocalAudioVolumeIndication me 1"));
  SetCurrentRecordingMute(true);
  LetTimePass();
  stand::Clear();
  EXPECT_TRUE(WaitFor("OnLocalAudioVolumeIndication me 0", 3));
  EXPECT_EQ(Count("OnLocalAudioVolumeIndication me 1"), 0);
  SetCurrentRecordingMute(false);
  EnableLocalAudio(false);
}

TEST_F(Pulse, IsStillWithoutOthersOutsideOfTheRoomAndWhenItIsTurnedOff) {
  SimSetParams(R"({"sim.pace": {"volumeMs": 1}, "sim.room": {"participants": [{"userId": "ivy"}]}})");
  Join("me");
  const std::string loud = "OnAudioVolumeIndication ivy";
  const auto isStill = [&] {
    LetTimePass();
    stand::Clear();
    LetTimePass();
    return Count(loud) == 0;
  };
  EXPECT_TRUE(WaitFor(loud));
  SimSetParams(R"({"sim.leave": ["ivy", "jan"]})");
  EXPECT_TRUE(isStill());
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "ivy"}]}})");
  EXPECT_TRUE(WaitFor(loud));
  SimSetParams(R"({"sim.pace": {"volumeMs": 0}})");
  EXPECT_TRUE(isStill());
  SimSetParams(R"({"sim.pace": {"volumeMs": 1}})");
  EXPECT_TRUE(WaitFor(loud));
  LeaveRoom();
  EXPECT_TRUE(isStill());
}

}  // namespace
