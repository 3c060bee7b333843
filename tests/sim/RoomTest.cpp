#include "Stand.h"

namespace {

using stand::Count;
using stand::WaitFor;

using Room = stand::Started;

TEST_F(Room, ParticipantsComePublishAndGo) {
  Join(R"({"userId": "ann", "encodings": [{"width": 320, "height": 180},
                                          {"width": 640, "height": 360, "frameRate": 15}]},
          {"userId": "ann", "streamIndex": 1, "encodings": [{"width": 800, "height": 600}]},
          {"userId": "bob", "joinAfterMs": 30, "leaveAfterMs": 30},
          {"userId": "eve", "subscribeState": 7}, {"userId": "fay", "leaveAfterFrames": 2},
          {"userId": "hush", "silentAfterFrames": 3, "silentForMs": 300})");
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded ann ann_0 0 2 640 360 15"));
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded ann ann_1 1 1 800 600 30"));
  EXPECT_TRUE(WaitFor("OnUserJoin bob 0"));
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved bob bob_0 0"));
  EXPECT_TRUE(WaitFor("OnUserLeave bob 0"));
  EXPECT_EQ(Count("OnUserJoin ann 0"), 1);
  const SubscribeConfig any{};
  EXPECT_EQ(Subscribe("eve_0", 3, 0, &any), 0);
  EXPECT_TRUE(WaitFor("OnStreamSubscribed 7 eve_0"));
  Watch("fay_0", 64, 36, 60);
  EXPECT_TRUE(WaitFor("OnUserLeave fay 0"));  // while a frame is being handed over
  Watch("hush_0", 64, 36, 30);
  EXPECT_TRUE(WaitFor("OnVideoCommonFrame hush", 4));  // back from silence

  SimSetParams(R"({"sim.leave": ["ann"], "sim.room": {"participants": [{"userId": "cid"}]}})");
  EXPECT_TRUE(WaitFor("OnUserJoin cid 0"));
  EXPECT_TRUE(WaitFor("OnUserLeave ann 0"));
  EXPECT_EQ(Count("OnMultiStreamRemoved ann "), 2);

  LeaveRoom();
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved cid cid_0 0"));
  EXPECT_EQ(Subscribe("cid_0", 3, 0, &any), -1);
}

TEST_F(Room, JoinThatWasLeftSucceedsNoMore) {
  SimSetParams(R"({"sim.room": {"joinDelayMs": 30}})");
  const JoinUser early{"early", ""};
  const JoinRoomOption option{};
  JoinRoom("", "room", &early, &option);
  LeaveRoom();
  Join();
  EXPECT_EQ(Count("OnRoomStateChanged room early 1"), 0);
}

}  // namespace
