// Joining and leaving, and what becomes of the wishes for video.
#include "ServerTest.h"

namespace integration {
namespace {

using namespace testing;

constexpr char kJoin[] = R"(["token","room","me","extra"])";

class MeetingTest : public ServerTest {
 protected:
  // Makes the engine tell that a room was joined (1) or joined again (2).
  void FireRoomState(int kind) {
    SetParams(R"("sim.fire":[{"entry":"OnRoomStateChanged","args":["room","me",0,0,)" + std::to_string(kind) +
              ",77]}]");
  }
};

// From the preview to the second farewell.
TEST_F(MeetingTest, GoesAsAPersonHasIt) {
  ASSERT_NO_FATAL_FAILURE(
      Begin(R"("sim.devices":[{"type":0,"id":"mic"},{"type":2,"id":"cam"}],"sim.room":{"participants":[)"
            R"({"userId":"ann"},{"userId":"bob"}]})"));
  Call("StartPreview");
  EXPECT_EQ(Expect("LOCAL_PREVIEW_STATUS"), "[true, true]");
  EXPECT_EQ(NextUpdate("__preview_stream__0").slots[0].uid, "");
  ReadFrame("__preview_stream__0");
  EXPECT_THAT(Call("FetchServerState"), HasSubstr(R"("isStartPreview":true)"));
  Call("StopPreview");
  EXPECT_EQ(Expect("LOCAL_PREVIEW_STATUS"), "[false, true]");
  EXPECT_EQ(Expect("SHARE_MEMORY_UPDATE"), "[1, []]");  // the stream has left the table by then
  Call("StartPreview");
  ReadFrame("__preview_stream__1");
  EXPECT_EQ(Call("JoinMeeting", kJoin), "0");
  EXPECT_EQ(Expect("MY_UID_CHANGE"), R"(["me"])");
  EXPECT_THAT(Expect("JOIN_CHANNEL_SUCCESS"), StartsWith(R"(["room", "me", )"));
  for (const char* user : {"ann", "bob"}) {  // two come
    EXPECT_EQ(Expect("USER_JOIN"), "[\"" + std::string(user) + "\", 0]");
    EXPECT_THAT(Expect("STREAM_ADDED"), StartsWith("[\"" + std::string(user) + "\", "));
  }
  Subscribe("ann_0");
  ReadFrame("ann_0");
  SetParams(R"("sim.room":{"participants":[{"userId":"bob","streamIndex":1}]})");  // one shares his screen
  EXPECT_THAT(Expect("STREAM_ADDED"), StartsWith(R"(["bob", "bob_1", true, )"));
  Subscribe("bob_1");
  ReadFrame("bob_1");
  Call("EnableLocalVideo", "[true]");
  EXPECT_THAT(Expect("STREAM_ADDED"), StartsWith(R"(["me", "me_0", false, )"));
  ReadFrame("me_0");
  Call("EnableLocalVideo", "[false]");
  EXPECT_EQ(Expect("STREAM_REMOVED"), R"(["me", "me_0", false])");
  Call("ShareDesktop", "[1]");
  EXPECT_THAT(Expect("STREAM_ADDED"), StartsWith(R"(["me", "me_1", true, [{"width":1280,"height":720,)"));
  ReadFrame("me_1");
  Call("StopShareScreen", "[0]");
  EXPECT_EQ(Expect("STREAM_REMOVED"), R"(["me", "me_1", true])");
  SetParams(R"("sim.devices":[{"type":0,"id":"mic"}])");  // the camera is unplugged
  EXPECT_THAT(Expect("DEVICE_REMOVED"), StartsWith(R"([2, [{"deviceName":"","deviceId":"cam",)"));
  SetParams(R"("sim.fire":[{"entry":"OnConnectionStateChanged","args":[4]}])");  // the network goes and comes
  EXPECT_EQ(Expect("CONNECTION_STATE_CHANGED"), "[4]");
  FireRoomState(2);
  EXPECT_EQ(Expect("REJOIN_CHANNEL_SUCCESS"), R"(["room", "me", 77])");
  EXPECT_THAT(Call("FetchServerState"), HasSubstr(R"("isJoinMeeting":true)"));
  ReadFrame("ann_0");
  Call("LeaveMeeting");
  EXPECT_EQ(Expect("LEAVE_MEETING_SUCCESS"), "[]");
  EXPECT_THAT(Call("FetchServerState"), StartsWith(R"({"myUid":"me","isJoinMeeting":false,"roomId":"room",)"));
  for (int i = 0; i < 3; ++i) Expect("STREAM_REMOVED");

  Call("JoinMeeting", kJoin);
  Expect("JOIN_CHANNEL_SUCCESS");
  for (int i = 0; i < 3; ++i) Expect("STREAM_ADDED");
  Call("LeaveMeeting");
  SetParams(R"("sim.room":{"joinNever":true})");
  Call("JoinMeeting", kJoin);
  Call("LeaveMeeting");
  FireRoomState(1);  // too late: nobody wants to hear of it any more
  FireRoomState(2);
  EXPECT_EQ(Expect("REJOIN_CHANNEL_SUCCESS"), R"(["room", "me", 77])");
  EXPECT_TRUE(server_->WaitForLog("[JoinChannelSuccess] isJoinMeeting is false, so return"));
  EXPECT_FALSE(HasCome("JOIN_CHANNEL_SUCCESS"));
}

TEST_F(MeetingTest, AsksTheEngineOnceForVideoAndGoesBackToAudioWithoutASlotWithTheLastView) {
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(
      R"({"userId":"ann","encodings":[{"width":320,"height":180,"frameRate":15},{"width":640,"height":360}]})"));
  EXPECT_THAT(Expect("STREAM_ADDED"), StartsWith(R"(["ann", "ann_0", false, [{"width":320,"height":180,)"));
  Subscribe("ann_0", 1);
  EXPECT_EQ(Expect("SERVER_SUB_STARTED"), R"(["ann_0", true, true, 1])");
  EXPECT_EQ(Expect("STREAM_SUBSCRIBED"),
            R"([0, "ann_0", {"subscribeVideo":true,"subscribeAudio":true,"videoIndex":1,"layer":0}])");
  // The event leaves before the scheduler's task has run, so a first answer may still show the subscription as asked
  // for.
  EXPECT_TRUE(WaitUntil([this] {
    return Call("GetSubscribeStatus") ==
           R"({"maxSubscribingNumber":10,"subscribing":[],"unSubscribing":[],"subscribed":["ann_0"],)"
           R"("waitingSubscribe":[],"audioSubscribing":["ann_0"],)"
           R"("subscribedInfo":[{"sid":"ann_0","index":1,"layer":0}]})";
  }));
  EXPECT_EQ(NextUpdate("ann_0").operation, 0);
  Call("SubscribeVideo", R"(["ann_0",0,0,{"subscribeClientId":"ignored"},"other"])");
  Call("UnSubscribeVideo", R"(["ann_0",{"subscribeClientId":"view"}])");
  EXPECT_THAT(server_->Calls("Unsubscribe"), IsEmpty());
  Call("UnSubscribeVideo", R"(["ann_0",{"subscribeClientId":"other"}])");
  EXPECT_THAT(server_->Calls("Unsubscribe"), ElementsAre(R"("ann_0",2,0)"));
  EXPECT_THAT(server_->Calls("Subscribe"),
              ElementsAre(R"("ann_0",3,0,{"frameRate":30,"width":640,"height":360,"unused":[-1,-1,-1,-1,-1,-1,-1]})",
                          R"("ann_0",1,0,{"frameRate":15,"width":320,"height":180,"unused":[-1,-1,-1,-1,-1,-1,-1]})"));
  EXPECT_EQ(NextUpdate("ann_0").operation, 1);
  EXPECT_TRUE(WaitUntil([this] { return tracker_->Slots().empty(); }));
  Subscribe("ann_0");
  EXPECT_EQ(NextUpdate("ann_0").operation, 0);
}

TEST_F(MeetingTest, TellsOfFirstFramesAndOfStreamsThatFallSilent) {
  ASSERT_NO_FATAL_FAILURE(WatchAnn(R"("silentAfterFrames":10)"));
  EXPECT_EQ(Expect("FIRST_FRAME_RECEIVED"), R"(["ann_0", 1])");
  while (Expect("FRAME_STATUS_CHANGE") != R"(["ann_0", "ann", 1, 2])" && !HasFailure()) {
  }
  // The state that the stream had until now.
  EXPECT_EQ(Expect("FRAME_STATUS_CHANGE"), R"(["ann_0", "ann", 1, 2])");
  EXPECT_THAT(Call("FetchStreamInfo", R"(["ann",1])"),
              StartsWith(R"({"uid":"ann","sid":"ann_0","streamType":1,"frameStatus":1,"isSelf":false,)"));
}

}  // namespace
}  // namespace integration
