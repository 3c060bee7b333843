#include "Stand.h"

namespace {

using stand::Count;
using stand::WaitFor;

class Room : public stand::Started {};

constexpr SubscribeConfig kAny{0, 0, 0, {-1, -1, -1, -1, -1, -1, -1}};

TEST_F(Room, ParticipantsComePublishAndGo) {
  SimSetParams(R"({"sim.room": {"participants": [
      {"userId": "ann", "encodings": [{"width": 320, "height": 180}, {"width": 640, "height": 360, "frameRate": 15}]},
      {"userId": "ann", "streamIndex": 1, "encodings": [{"width": 800, "height": 600}]},
      {"userId": "bob", "joinAfterMs": 30, "leaveAfterMs": 30}]}})");
  Join("me");
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded ann ann_0 0 2 640 360 15"));
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded ann ann_1 1 1 800 600 30"));
  EXPECT_TRUE(WaitFor("OnUserPublishStream room ann 0 3"));
  EXPECT_TRUE(WaitFor("OnUserJoin bob 0"));
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved bob bob_0 0"));
  EXPECT_TRUE(WaitFor("OnUserLeave bob 0"));
  EXPECT_EQ(Count("OnUserJoin ann 0"), 1);

  SimSetParams(R"({"sim.room": {"participants": [{"userId": "cid"}]}})");
  EXPECT_TRUE(WaitFor("OnUserJoin cid 0"));
  SimSetParams(R"({"sim.leave": ["ann"]})");
  EXPECT_TRUE(WaitFor("OnUserLeave ann 0"));
  EXPECT_EQ(Count("OnMultiStreamRemoved ann ann_0 0"), 1);
  EXPECT_EQ(Count("OnMultiStreamRemoved ann ann_1 1"), 1);

  LeaveRoom();
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved cid cid_0 0"));
  EXPECT_EQ(Subscribe("cid_0", 3, 0, &kAny), -1);
}

TEST_F(Room, JoinThatWasLeftSucceedsNoMore) {
  SimSetParams(R"({"sim.room": {"joinDelayMs": 30}})");
  const JoinUser early{"early", ""};
  const JoinRoomOption option{};
  JoinRoom("", "room", &early, &option);
  LeaveRoom();
  Join("late");
  EXPECT_EQ(Count("OnRoomStateChanged room early 1"), 0);
}

TEST_F(Room, JoinCanStayUnanswered) {
  SimSetParams(R"({"sim.room": {"joinDelayMs": 0, "joinNever": true}})");
  const JoinUser user{"unheard", ""};
  const JoinRoomOption option{};
  EXPECT_EQ(JoinRoom("", "room", &user, &option), 0);
  SimSetParams(R"({"sim.room": {"joinNever": false}})");
  Join("heard");
  EXPECT_EQ(Count("OnRoomStateChanged room unheard 1"), 0);
}

TEST_F(Room, SubscriptionTellsWhatItHasComeTo) {
  SimSetParams(R"({"sim.room": {"participants": [
      {"userId": "dan", "encodings": [{"width": 320, "height": 180}, {"width": 640, "height": 360}]},
      {"userId": "eve", "subscribeState": 7}]}})");
  Join("me");
  ASSERT_TRUE(WaitFor("OnUserJoin eve 0"));
  Watch("dan_0", 640, 360, 30);
  EXPECT_EQ(Count("OnStreamSubscribed 0 dan_0 1 1 1"), 1);
  ASSERT_TRUE(WaitFor("OnFirstRemoteVideoFrameDecoded dan 640 360"));
  ASSERT_TRUE(WaitFor("OnServerVideoFrame dan", 2));

  EXPECT_EQ(Unsubscribe("dan_0", 2, 0), 0);
  EXPECT_EQ(Subscribe("dan_0", 1, 0, &kAny), 0);
  EXPECT_TRUE(WaitFor("OnStreamSubscribed 0 dan_0 0 1 0"));

  ASSERT_TRUE(WaitFor("OnUserPublishStream room eve 0 3"));
  EXPECT_EQ(Subscribe("eve_0", 3, 0, &kAny), 0);
  EXPECT_TRUE(WaitFor("OnStreamSubscribed 7 eve_0 1 1 0"));
  EXPECT_TRUE(stand::Frames("eve").empty());
  EXPECT_EQ(Subscribe("nobody_0", 3, 0, &kAny), -1);
}

TEST_F(Room, UserLeavesWhileHisFrameIsHandedOver) {
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "fay", "leaveAfterFrames": 2}]}})");
  Join("me");
  Watch("fay_0", 64, 36, 60);
  EXPECT_TRUE(WaitFor("OnUserLeave fay 0"));
  ASSERT_TRUE(stand::WaitForFrames("fay", 3));
}

TEST_F(Room, OwnCameraAndScreenArePublished) {
  SimSetParams(R"({"sim.camera": {"encoding": {"width": 98, "height": 54}}})");
  EXPECT_EQ(EnableLocalVideo(true), 0);  // before the room
  EXPECT_FALSE(IsMuteLocalVideo());
  Join("me");
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded me me_0 0 1 98 54 30"));
  EXPECT_TRUE(stand::WaitForFrame("me", [](const auto& frame) { return frame.info.field_type == 0; }));
  EXPECT_TRUE(WaitFor("OnServerVideoFrame me"));

  EXPECT_EQ(StartScreenCapture(77, true, 0), -1);
  EXPECT_TRUE(WaitFor("OnScreenCaptureStartResult -1"));
  EXPECT_EQ(StartScreenCapture(1, true, 0), 0);
  EXPECT_EQ(SCPublishScreen(2, 0), 0);
  EXPECT_TRUE(WaitFor("OnMultiStreamAdded me me_1 1 1 1280 720 15"));
  EXPECT_TRUE(stand::WaitForFrame("me", [](const auto& frame) { return frame.info.field_type == 1; }));
  EXPECT_TRUE(WaitFor("OnServerScreenFrame me"));
  SCUnpublishScreen(3, 0);
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved me me_1 1"));
  EnableLocalVideo(false);
  EXPECT_TRUE(WaitFor("OnMultiStreamRemoved me me_0 0"));
}

TEST_F(Room, PreviewHasNoUserId) {
  StartVideoCapture();
  ASSERT_TRUE(stand::WaitForFrames("", 2));
  StopVideoCapture();
  EXPECT_EQ(Count("OnServerVideoFrame "), 0);
}

}  // namespace
