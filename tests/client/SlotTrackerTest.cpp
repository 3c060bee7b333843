#include "client/SlotTracker.h"

#include <gmock/gmock.h>

#include <future>

#include "../slots/SlotFixture.h"
#include "ScriptedServer.h"
#include "common/JsonWriter.h"
#include "support/WaitUntil.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using ravo::client::Session;
using ravo::client::ShareMemoryInfo;
using ravo::client::SlotTracker;
using testing::ElementsAre;
using namespace std::chrono_literals;

ShareMemoryInfo Slot(const std::string& sid, const std::string& path) {
  ShareMemoryInfo info;
  info.sid = sid;
  info.path = path;
  info.width = 64;
  return info;
}

class SlotTracking : public testing::Test {
 protected:
  SlotTracking() { EXPECT_TRUE(session_.Connect(5s)); }

  void Announce(int operation, const ShareMemoryInfo& info) {
    server_.SendEvent("shareMemoryUpdate",
                      "[\n\t" + std::to_string(operation) + ",\t[" + TESSARIN_COMMON::JsonText(info) + "]\n]");
  }
  // All that was announced before has been heard when this returns.
  void Settle() {
    server_.SendEvent("settled", "[]");
    EXPECT_TRUE(session_.WaitEvent("SETTLED", 30s));
  }
  [[nodiscard]] std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    for (const auto& slot : tracker_.Slots()) paths.push_back(slot.path);
    return paths;
  }
  static std::string Ack(const ShareMemoryInfo& info) {
    return "ack_share_memory_update [1,[" + TESSARIN_COMMON::JsonText(info) + "]]";
  }

  ScriptedServer server_{[](ScriptedServer& self, const Request& request) { self.Answer(request, "null"); }};
  Session session_{server_.Name()};
  SlotTracker tracker_{session_};
};

TEST_F(SlotTracking, AcknowledgesTheEndOfASlotWithItsRecordAndOnlyOnce) {
  ShareMemoryInfo turned = Slot("s", "p1");
  Announce(0, turned);
  turned.rotation = 90;
  Announce(0, turned);  // in the same slot
  Settle();
  ASSERT_THAT(Paths(), ElementsAre("p1"));
  EXPECT_EQ(tracker_.Slots().front().rotation, 90u);

  Announce(1, Slot("s", "p1"));
  Announce(1, Slot("s", "p1"));  // the stream went on sending frames that do not fit
  Announce(0, Slot("s", "p2"));
  Announce(1, Slot("s", "p1"));
  Settle();
  EXPECT_THAT(Paths(), ElementsAre("p2"));
  EXPECT_TRUE(session_.Call("last", "[]", 30s).Ok());
  EXPECT_THAT(server_.WaitRequests(2), ElementsAre(Ack(Slot("s", "p1")), "last []"));
}

TEST_F(SlotTracking, ASlotThatCannotBeOpenedIsAnErrorAndAMissingOneATimeOut) {
  ravo::client::Frame frame;
  EXPECT_EQ(tracker_.Read("none", frame, 10ms), ravo::client::FrameReader::Outcome::TimedOut);
  Announce(0, Slot("s", "no_such_segment"));
  EXPECT_THROW((void)tracker_.Read("s", frame, 30s), std::runtime_error);
}

TEST_F(SlotTracking, LetsASlotGoOnlyWhenNobodyReadsThere) {
  slots_test::AddStream("ann", "s");
  slots_test::VideoFrameSlots writer("test", [this](std::int64_t, const auto& records) {
    Announce(0, Slot(records.front().sid, records.front().path));
  });
  const slots_test::TestFrame sent(8, 4, 7);
  writer.UpdateSlot("s", sent.meta, sent.planes);
  ravo::client::Frame frame;
  ASSERT_EQ(tracker_.Read("s", frame, 30s), ravo::client::FrameReader::Outcome::Frame);
  EXPECT_EQ(frame.width, 8u);

  auto reading = std::async(std::launch::async, [&] { return tracker_.Read("s", frame, 30s); });
  const ShareMemoryInfo ended = tracker_.Slots().front();
  EXPECT_TRUE(support::WaitUntil([this] { return tracker_.Reads("s"); }));
  Announce(1, ended);
  Settle();
  EXPECT_TRUE(session_.Call("before", "[]", 30s).Ok());
  writer.Tick();
  writer.UpdateSlot("s", sent.meta, sent.planes);
  EXPECT_EQ(reading.get(), ravo::client::FrameReader::Outcome::Frame);
  EXPECT_THAT(server_.WaitRequests(2), ElementsAre("before []", Ack(ended)));
  EXPECT_THAT(Paths(), ElementsAre());
}

}  // namespace
