// The life of frame slots: announced, turned, taken back, and not there where nothing is to be shown.
#include "ServerTest.h"
#include "common/JsonWriter.h"

namespace integration {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class SlotTest : public ServerTest {
 protected:
  // Joins a room where ann publishes, with these members, and subscribes to her. The first announcement is the result.
  SlotUpdate Watch(const std::string& members, Acks acks) {
    JoinRoomOf(R"({"userId":"ann","encodings":[{"width":64,"height":48}])" + members + "}", acks);
    if (HasFatalFailure()) return {-1, {{}}};
    Expect("STREAM_ADDED");
    Subscribe("ann_0");
    return NextUpdate("ann_0");
  }
};

TEST_F(SlotTest, AnnouncesAStreamsSlotWithItsFirstFrame) {
  const SlotUpdate added = Watch("", Acks::ByTest);
  EXPECT_EQ(added.operation, 0);
  ASSERT_THAT(added.slots, SizeIs(1));
  const std::string record = TESSARIN_COMMON::JsonText(added.slots);
  EXPECT_EQ(record, R"([{"sid":"ann_0","uid":"ann","bufferSize":4660,"isScreen":false,"path":)" +
                        Quoted(added.slots[0].path) +
                        R"(,"bufferNumber":1,"isMerge":false,"frameFormat":0,"width":64,"height":48,"rotation":0,)"
                        R"("flip":false}])");
  EXPECT_EQ(Call("GetShareMemoryInfo"), record);
  End();
  EXPECT_THAT(ServerProcess::SharedNames(added.slots[0].path), IsEmpty());
}

TEST_F(SlotTest, AChangeOfSizeWaitsForTheClientToLetGo) {
  const SlotUpdate added = Watch(R"(,"changes":[{"afterFrames":5,"width":80,"height":60}])", Acks::ByTest);
  const SlotUpdate removed = NextUpdate("ann_0");
  EXPECT_EQ(removed.operation, 1);
  EXPECT_EQ(removed.slots[0].path, added.slots[0].path);
  EXPECT_EQ(removed.slots[0].width, 80u);
  EXPECT_EQ(Call("GetShareMemoryInfo"), "[]");

  Acknowledge(removed);
  const SlotUpdate again = NextUpdate("ann_0");
  EXPECT_NE(again.slots[0].path, added.slots[0].path);
}

TEST_F(SlotTest, ATurnedPictureStaysWhereItIs) {
  const SlotUpdate added = Watch(R"(,"changes":[{"afterFrames":5,"rotation":90}])", Acks::ByTracker);
  const SlotUpdate turned = NextUpdate("ann_0");
  EXPECT_EQ(turned.operation, 0);
  EXPECT_EQ(turned.slots[0].path, added.slots[0].path);
  EXPECT_EQ(turned.slots[0].rotation, 90u);
  while (ReadFrame("ann_0").rotation != 90 && !HasFailure()) {
  }
  EXPECT_EQ(Call("GetShareMemoryInfo"), "[]");  // wanted: the client has the slot already
}

TEST_F(SlotTest, AStreamsSlotEndsBeforeTheStreamDoes) {
  const SlotUpdate added = Watch("", Acks::ByTracker);
  ReadFrame("ann_0");
  SetParams(R"("sim.leave":["ann"])");
  const auto events = EventsUpTo("STREAM_REMOVED");
  EXPECT_EQ(events.back().content, R"(["ann", "ann_0", false])");
  EXPECT_EQ(events[events.size() - 2].key, "SHARE_MEMORY_UPDATE");
  EXPECT_THAT(events[events.size() - 2].content, testing::StartsWith(R"([1, [{"sid":"ann_0","uid":"ann",)"));
  EXPECT_TRUE(server_->WaitForLog("[STREAM_FRAME] DestroySlot - sid: ann_0"));
  std::string error;
  EXPECT_EQ(ravo::client::FrameReader::Open(added.slots[0].path, error), nullptr);
}

TEST_F(SlotTest, AudioAloneRetiresTheSlot) {
  Watch("", Acks::ByTracker);
  Call("UnSubscribeVideo", R"(["ann_0",{"subscribeClientId":"view"}])");
  EXPECT_EQ(NextUpdate("ann_0").operation, 1);
  EXPECT_TRUE(WaitUntil([this] { return tracker_->Slots().empty(); }));
  Subscribe("ann_0");
  EXPECT_EQ(NextUpdate("ann_0").operation, 0);
}

TEST_F(SlotTest, ShowsNothingOfAStreamWithoutVideo) {
  const SlotUpdate added = Watch("", Acks::ByTest);
  // The stream goes on while the engine says that it is subscribed without video.
  SetParams(R"("sim.fire":[{"entry":"OnStreamSubscribed","args":[0,"ann_0",{"subscribeAudio":true}]}])");
  EXPECT_EQ(NextUpdate("ann_0").operation, 1);
  const SlotUpdate repeated = NextUpdate("ann_0");  // with each frame until it is acknowledged
  EXPECT_EQ(repeated.operation, 1);
  Acknowledge(repeated);
  const std::string dropped = "streaminfo hasvideo = false, but received frame, sid = ann_0";
  EXPECT_TRUE(server_->WaitForLog(dropped, server_->LogLines(dropped).size() + 10));
  EXPECT_EQ(Call("GetShareMemoryInfo"), "[]");
  while (const auto event = session_->WaitEvent("SHARE_MEMORY_UPDATE", std::chrono::milliseconds(0))) {
    EXPECT_THAT(event->content, testing::StartsWith("[1,"));
  }
}

TEST_F(SlotTest, ShowsThePreview) {
  StartServer(R"("sim.camera":{"encoding":{"width":64,"height":48}})");
  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_EQ(Call("StartPreview"), "null");
  EXPECT_EQ(Expect("LOCAL_PREVIEW_STATUS"), "[true, true]");
  EXPECT_EQ(NextUpdate("__preview_stream__0").slots[0].uid, "");
  ReadFrame("__preview_stream__0");
  EXPECT_THAT(Call("FetchServerState"), HasSubstr(R"("isStartPreview":true)"));
  EXPECT_EQ(Call("StopPreview"), "null");
  EXPECT_EQ(Expect("LOCAL_PREVIEW_STATUS"), "[false, true]");
  // The stream has left the table by then, so that its slot is not named.
  EXPECT_EQ(Expect("SHARE_MEMORY_UPDATE"), "[1, []]");
  Call("StartPreview");
  EXPECT_EQ(NextUpdate("__preview_stream__1").operation, 0);
}

TEST_F(SlotTest, ShowsTheOwnVideoWhileItIsOn) {
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(""));
  EXPECT_EQ(Call("EnableLocalVideo", "[true]"), "0");
  EXPECT_THAT(Expect("STREAM_ADDED"), testing::StartsWith(R"(["me", "me_0", false, )"));
  ReadFrame("me_0");
  EXPECT_EQ(Call("SubscribeVideo", R"(["me_0",0,0])"), "null");
  EXPECT_THAT(server_->Calls("Subscribe"), IsEmpty());  // nobody subscribes to himself

  EXPECT_EQ(Call("EnableLocalVideo", "[false]"), "0");
  const auto events = EventsUpTo("STREAM_REMOVED");
  EXPECT_THAT(events[events.size() - 2].content, testing::StartsWith(R"([1, [{"sid":"me_0","uid":"me",)"));
  EXPECT_TRUE(WaitUntil([this] { return tracker_->Slots().empty(); }));
  EXPECT_EQ(Call("EnableLocalVideo", "[true]"), "0");
  ReadFrame("me_0");
}

}  // namespace
}  // namespace integration
