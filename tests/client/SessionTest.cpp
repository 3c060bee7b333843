#include "client/Session.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>

#include "ScriptedServer.h"
#include "support/WaitUntil.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using ravo::client::Event;
using ravo::client::Reply;
using ravo::client::Session;
using support::kBound;
using testing::ElementsAre;
using namespace std::chrono_literals;

// Keeps the first of two requests and answers it after the second, with events around.
void AnswerInReverse(ScriptedServer& server, const Request& request) {
  static std::vector<Request>* const kept = new std::vector<Request>;
  kept->push_back(request);
  if (kept->size() < 2) return;
  server.SendEvent("OnSysStats", "[1]");
  for (; !kept->empty(); kept->pop_back()) {
    server.Answer(kept->back(), kept->back().content);
    server.SendEvent("OnSysStats", "[2]");
  }
  server.SendEvent("Late", "[3]");
}

TEST(Session, RepliesFindTheirCallsInAnyOrderAndAmongEvents) {
  ScriptedServer server(AnswerInReverse);
  Session session(server.Name());
  std::vector<std::string> heard;
  session.AddListener([&](const Event& event) { heard.push_back(event.content); });
  ASSERT_TRUE(session.Connect(5s));

  std::promise<Reply> first;
  session.CallAsync("SetFps", "[15]", [&](const Reply& reply) { first.set_value(reply); });
  const Reply second = session.Call("get_init_info", "[\"second\"]", kBound);
  EXPECT_TRUE(second.Ok());
  EXPECT_EQ(second.key, "GetInitInfo");
  EXPECT_EQ(second.content, "[\"second\"]");
  EXPECT_EQ(first.get_future().get().content, "[15]");
  EXPECT_THAT(server.WaitRequests(2), ElementsAre("set_fps [15]", "get_init_info [\"second\"]"));
  EXPECT_EQ(session.WaitEvent("LATE", kBound).value_or(Event{}).content, "[3]");  // the others stay
  for (const char* content : {"[1]", "[2]", "[2]"}) {
    EXPECT_EQ(session.WaitEvent("", kBound).value_or(Event{}).content, content);
  }
  session.Close();
  EXPECT_THAT(heard, ElementsAre("[1]", "[2]", "[2]", "[3]"));
}

TEST(Session, ALateReplyIsNotTakenForAnotherAndAnErrorIsTold) {
  Request late;
  ScriptedServer server([&](ScriptedServer& self, const Request& request) {
    if (request.key == "late") {
      late = request;
      return;
    }
    self.Answer(late, "late");
    self.Answer(request, "handle not found name", TESSARIN_COMMON::kMessageCallResponseError);
  });
  Session session(server.Name());
  ASSERT_TRUE(session.Connect(5s));
  EXPECT_EQ(session.Call("late", "[]", 50ms).outcome, Reply::Outcome::TimedOut);
  const Reply reply = session.Call("Unknown", "[]", kBound);
  EXPECT_EQ(reply.outcome, Reply::Outcome::Error);
  EXPECT_EQ(reply.content, "handle not found name");
  // What would end the server is not sent.
  for (const char* text : {"", "[1", "{} {}"}) EXPECT_THROW(session.Call("Any", text, kBound), std::invalid_argument);
  EXPECT_THAT(server.WaitRequests(2), testing::SizeIs(2));
}

TEST(Session, TheEndOfTheServerAnswersAllCallsAndWakesAllWaiters) {
  ScriptedServer server;
  Session session(server.Name());
  std::atomic<int> closed = 0;
  session.SetOnClosed([&] { ++closed; });
  ASSERT_TRUE(session.Connect(5s));
  std::promise<Reply> pending;
  session.CallAsync("Never", "[]", [&](const Reply& reply) { pending.set_value(reply); });
  server.WaitRequests(1);
  auto waiter = std::async(std::launch::async, [&] { return session.WaitEvent("NEVER", kBound).has_value(); });
  server.Stop();
  EXPECT_EQ(pending.get_future().get().outcome, Reply::Outcome::Closed);
  EXPECT_FALSE(waiter.get());
  EXPECT_TRUE(session.WaitClosed(kBound));
  EXPECT_EQ(session.Call("After", "[]", kBound).outcome, Reply::Outcome::Closed);
  session.Close();
  EXPECT_EQ(closed, 1);
}

}  // namespace
