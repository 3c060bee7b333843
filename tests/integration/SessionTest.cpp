// What passes between a server and a client that behaves, to the letter where the letter counts.
#include "RawLink.h"
#include "ServerTest.h"

namespace integration {
namespace {

using testing::HasSubstr;

class SessionTest : public ServerTest {
 protected:
  // A raw session instead of the client's.
  void ConnectRaw(const std::string& params = "") {
    StartServer(params);
    ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1)) << server_->Host().Err();
    link_ = std::make_unique<RawLink>(server_->Pipe());
    ASSERT_TRUE(link_->Connected());
  }
  std::string Receive() { return link_->Receive().value_or("nothing"); }
  std::string Ask(const std::string& request) {
    EXPECT_TRUE(link_->Send(RawLink::Framed(request)));
    return link_->ReceiveReply().value_or("nothing");
  }
  void TearDown() override {
    if (link_) link_->Close();
    End();
  }

  std::unique_ptr<RawLink> link_;
};

std::string EventText(const std::string& key, const std::string& content) {
  return R"({"method_name":{"module_name":"","content_type":"JSON","message_type":"EVENT","message_key":")" + key +
         R"(","context_id":"","taskId":0},"content":)" + Quoted(content) + "}";
}

TEST_F(SessionTest, BeginsWithConnectAndInit) {
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  EXPECT_EQ(Receive(), EventText("connect", R"(["vc"])"));
  std::string init = Receive();
  if (init == EventText("RTC_SDK_INIT", "[]")) init = Receive();  // the engine may be the quicker one
  EXPECT_THAT(init, HasSubstr(R"("message_type":"EVENT","message_key":"INIT","context_id":"","taskId":0},)"
                              R"("content":"[{\"serverState\":{\"myUid\":\"\",)"));
}

TEST_F(SessionTest, AnswersOnTheRequestsOwnEnvelope) {
  const struct {
    std::string request;
    std::string reply;
  } cases[] = {
      {RawLink::Request("get_share_memory_info", "[]", 7, R"("module_name":"m","content_type":"c","context_id":"x",)"),
       R"({"method_name":{"module_name":"m","content_type":"c","message_type":"CALL_RESPONSE",)"
       R"("message_key":"GetShareMemoryInfo","context_id":"x","taskId":7},"content":"[]"})"},
      {RawLink::Request("no_such_method", "[]", 8, R"("module_name":"m","context_id":"x","other":1,)"),
       R"({"method_name":{"module_name":"m","content_type":"","message_type":"CALL_RESPONSE_ERROR",)"
       R"("message_key":"NoSuchMethod","context_id":"x","taskId":8},"content":"handle not found nameNoSuchMethod"})"},
      // Nothing is lowered.
      {RawLink::Request("SET_FPS", "[]", -9),
       R"({"method_name":{"module_name":"","content_type":"","message_type":"CALL_RESPONSE_ERROR",)"
       R"("message_key":"SETFPS","context_id":"","taskId":-9},"content":"handle not found nameSETFPS"})"},
      {R"({"content":"[]"})",
       R"({"method_name":{"module_name":"","content_type":"","message_type":"CALL_RESPONSE_ERROR",)"
       R"("message_key":"","context_id":"","taskId":0},"content":"handle not found name"})"},
      // Whatever the message says it is, its key decides.
      {R"({"method_name":{"message_type":"EVENT","message_key":"connect"},"content":"[]"})",
       R"({"method_name":{"module_name":"","content_type":"","message_type":"CALL_RESPONSE",)"
       R"("message_key":"Connect","context_id":"","taskId":0},"content":"null"})"},
  };
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  for (const auto& exchange : cases) EXPECT_EQ(Ask(exchange.request), exchange.reply);
}

// Of the request only its number lives on.
TEST_F(SessionTest, AnswersThumbnailsOnAnEnvelopeOfItsOwn) {
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  EXPECT_EQ(Ask(RawLink::Request("get_window_thumbnail", "[{}]", 7, R"("module_name":"m","context_id":"x",)")),
            R"({"method_name":{"module_name":"","content_type":"JSON","message_type":"CALL_RESPONSE",)"
            R"("message_key":"","context_id":"","taskId":7},"content":)" +
                Quoted(R"([{"id":101,"val":"sim-thumbnail:101:0x0"},{"id":102,"val":"sim-thumbnail:102:0x0"}])") + "}");
}

TEST_F(SessionTest, PassesAnEngineEventOnToTheLetter) {
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  const std::string params = R"({"sim.fire":[{"entry":"OnVolumeChange","args":[5,true,false]}]})";
  EXPECT_TRUE(link_->Send(
      RawLink::Framed(RawLink::Request("update_server_option", R"({"rtcParams":)" + Quoted(params) + "}", 1))));
  std::string event = Receive();
  while (event != "nothing" && event.find("ON_VOLUME_CHANGE") == std::string::npos) event = Receive();
  EXPECT_EQ(event, EventText("ON_VOLUME_CHANGE", "[5, true, false]"));
}

TEST_F(SessionTest, AnswersPipelinedRequestsInOrder) {
  constexpr int kRequests = 32;
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  std::string all;
  for (int i = 1; i <= kRequests; ++i) all += RawLink::Framed(RawLink::Request("get_subscribe_status", "[]", i));
  ASSERT_TRUE(link_->Send(all));
  for (int i = 1; i <= kRequests; ++i) {
    EXPECT_THAT(link_->ReceiveReply().value_or("nothing"),
                HasSubstr(R"("taskId":)" + std::to_string(i) + R"(},"content":"{\"maxSubscribingNumber\":10,)"));
  }
}

TEST_F(SessionTest, PassesBodiesOfSeveralMegabytes) {
  ASSERT_NO_FATAL_FAILURE(ConnectRaw());
  for (const std::size_t size : {70'000u, 5'000'000u}) {
    std::string text(size, ' ');
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('a' + i * i % 26);
    const std::string reply = Ask(RawLink::Request("connect", "[]", 1, R"("context_id":")" + text + "\","));
    const std::string expected = R"({"method_name":{"module_name":"","content_type":"","message_type":"CALL_RESPONSE",)"
                                 R"("message_key":"Connect","context_id":")" +
                                 text + R"(","taskId":1},"content":"null"})";
    EXPECT_TRUE(reply == expected) << reply.size() << " bytes";
  }
}

TEST_F(SessionTest, TellsTheSameInformationWheneverItIsAsked) {
  StartServer("", R"("serverName":"Nero")");
  ASSERT_TRUE(server_->WaitForCalls("SetRtcRuntimeParameter", 1));
  session_ = std::make_unique<ravo::client::Session>(server_->Pipe());
  ASSERT_TRUE(session_->Connect(std::chrono::seconds(30)));
  Expect("connect");
  const std::string init = Expect("INIT");
  EXPECT_EQ(init, "[" + Call("get_init_info") + "]");
  EXPECT_EQ(init, "[" + Call("ForceBroadcastInit") + "]");
  EXPECT_FALSE(HasCome("INIT"));
  EXPECT_THAT(init, HasSubstr(R"("roomId":"","serverName":"Nero",)"));
  EXPECT_THAT(Call("FetchServerState"), HasSubstr(R"("roomId":"","serverName":"",)"));
}

TEST_F(SessionTest, LetsNobodyElseInWhileAClientIsThere) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  ravo::client::Session second(server_->Pipe());
  EXPECT_FALSE(second.Connect(std::chrono::seconds(0)));
  EXPECT_EQ(Call("Connect"), "null");
}

}  // namespace
}  // namespace integration
