#include "ServerTest.h"

#include <filesystem>

#include "common/JsonNode.h"

namespace integration {

using ravo::client::Frame;
using ravo::client::FrameReader;
using testing::IsEmpty;

void ServerTest::StartServer(const std::string& params, const std::string& options) {
  server_ = std::make_unique<ServerProcess>(params, options);
  ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1)) << server_->Host().Err();
}

void ServerTest::Connect() {
  session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
  if (hasTracker_) tracker_ = std::make_unique<ravo::client::SlotTracker>(*session_);
  ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
  Expect("connect");
  init_ = Expect("INIT");
}

void ServerTest::Begin(const std::string& params, const std::string& options) {
  ASSERT_NO_FATAL_FAILURE(StartServer(params, options));
  ASSERT_NO_FATAL_FAILURE(Connect());
}

void ServerTest::JoinRoomOf(const std::string& participants) {
  ASSERT_NO_FATAL_FAILURE(Begin(R"("sim.room":{"participants":[)" + participants + "]}"));
  EXPECT_EQ(Call("JoinMeeting", R"(["token","room","me",""])"), "0");
  Expect("JOIN_CHANNEL_SUCCESS");
}

void ServerTest::WatchAnn(const std::string& members) {
  ASSERT_NO_FATAL_FAILURE(JoinRoomOf(R"({"userId":"ann")" + (members.empty() ? "" : "," + members) + "}"));
  Expect("STREAM_ADDED");
  Subscribe("ann_0");
}

std::string ServerTest::Call(const std::string& method, const std::string& arguments) {
  const auto reply = session_->Call(method, arguments, kBound);
  EXPECT_TRUE(reply.Ok()) << method << ' ' << reply.content << '\n' << server_->Host().Err();
  return reply.content;
}

void ServerTest::SetParams(const std::string& params) {
  EXPECT_EQ(Call("UpdateServerOption", R"({"rtcParams":)" + Quoted("{" + params + "}") + "}"), "null");
}

std::string ServerTest::Expect(const std::string& key) {
  const auto event = session_->WaitEvent(key, kBound);
  EXPECT_TRUE(event) << key << " has not come\n" << server_->Host().Err();
  return event ? event->content : "";
}

SlotUpdate ServerTest::NextUpdate(const std::string& sid) {
  while (const auto event = session_->WaitEvent("SHARE_MEMORY_UPDATE", kBound)) {
    SlotUpdate update;
    TESSARIN_COMMON::JsonNode arguments(event->content);
    arguments[0].Get("", update.operation);
    arguments[1].Get("", update.slots);
    if (update.slots.size() == 1 && update.slots[0].sid == sid) return update;
  }
  ADD_FAILURE() << "no announcement of " << sid;
  return {-1, {{}}};
}

bool ServerTest::HasCome(const std::string& key) {
  Call("Connect");
  return session_->WaitEvent(key, std::chrono::milliseconds(0)).has_value();
}

void ServerTest::Subscribe(const std::string& sid, int encoding) {
  const std::string arguments =
      "[" + Quoted(sid) + "," + std::to_string(encoding) + R"(,0,{"subscribeClientId":"view"}])";
  EXPECT_EQ(Call("SubscribeVideo", arguments), "null");
}

Frame ServerTest::ReadFrame(const std::string& sid) {
  // In short waits: a slot that is being read is not let go.
  constexpr std::chrono::milliseconds kWait{50};
  Frame frame;
  EXPECT_TRUE(WaitUntil([&] { return tracker_->Read(sid, frame, kWait) == FrameReader::Outcome::Frame; })) << sid;
  return frame;
}

void ServerTest::Leave() {
  tracker_.reset();
  session_.reset();
  EXPECT_EQ(server_->Host().Wait(), 0) << server_->Host().Err();
}

void ServerTest::End() {
  if (server_ == nullptr) return;
  Leave();
  EXPECT_THAT(server_->Journal(R"({"violation")"), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(server_->Pipe()));
  server_.reset();
}

}  // namespace integration
