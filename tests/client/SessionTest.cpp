#include "client/Session.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>

#include "ScriptedServer.h"
#include "support/WaitUntil.h"

namespace {

using client_test::Request;
using client_test::ScriptedServer;
using ravo::client::Reply;
using ravo::client::Session;
using support::kBound;
using namespace std::chrono_literals;

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
