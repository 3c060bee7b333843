// Every method over the real link: what it answers, and what it asks of the engine.
#include <algorithm>
#include <mutex>
#include <set>

#include "Contract.h"
#include "ServerTest.h"

namespace integration {
namespace {

using ravo::client::Reply;

constexpr std::int64_t kFailure = -8589934591;  // needs more than 32 bits

struct Exchange {
  std::string method;
  std::string arguments;
  std::string reply;  // as in ContractCase, and the next too
  std::vector<std::string> calls;
};

// Whether the text is the pattern, in which each * stands for anything.
bool Matches(const std::string& text, const std::string& pattern) {
  const auto parts = Split(pattern, "*");
  std::size_t at = 0;
  for (const auto& part : parts) {
    at = text.find(part, at);
    if (at == std::string::npos) return false;
    at += part.size();
  }
  return text.starts_with(Split(pattern + "*", "*")[0]) && (at == text.size() || pattern.ends_with('*'));
}

std::string ReplyOf(const std::string& kind, std::int64_t result) {
  if (kind == "number") return std::to_string(result);
  if (kind == "int") return std::to_string(static_cast<std::int32_t>(result));
  if (kind == "bool") return result != 0 ? "true" : "false";
  return kind.starts_with('=') ? kind.substr(1) : kind;
}

// What goes for an argument of a type: the nth of its type in a call, nothing, something else.
std::string Typical(char type, std::ptrdiff_t nth) {
  if (type == 's') return "\"t\u00e9xt " + std::to_string(nth) + '"';
  if (type == 'i') return std::to_string((nth % 2 == 0 ? 5000000000 : -5000000000) + nth);
  return nth == 0 ? "true" : "false";
}
std::string Nothing(char type) {
  return type == 's' ? "\"\"" : type == 'i' ? "0" : "false";
}
std::string Wrong(char type) {
  return type == 's' ? "5" : type == 'i' ? "\"5\"" : "1";
}

template <class TextOf>
std::string ListOf(const std::string& types, TextOf textOf) {
  std::string list;
  for (std::size_t i = 0; i < types.size(); ++i) list += (i == 0 ? "" : ",") + textOf(types[i], i);
  return list;
}

// The calls of a method that hands its arguments over: all of them, none, the first alone, all of the wrong type, and
// for each type a lone value.
std::vector<Exchange> PlainExchanges(const Method& method, std::int64_t result) {
  const std::string& types = method.arguments;
  const std::string reply = ReplyOf(method.reply, result);
  std::vector<Exchange> exchanges;
  const auto add = [&](const std::string& arguments, const std::string& handed) {
    std::vector<std::string> calls;
    if (!method.entries.empty()) calls.push_back(method.entries[0] + ' ' + handed);
    exchanges.push_back({method.name, arguments, reply, calls});
  };
  if (types.empty() || types == "x") {
    add("[]", "");
    add("[1.5,{}]", "");
    return exchanges;
  }
  const auto typical = [&](char type, std::size_t i) {
    return Typical(type, std::count(types.begin(), types.begin() + static_cast<std::ptrdiff_t>(i), type));
  };
  const auto nothing = [](char type, std::size_t) { return Nothing(type); };
  add('[' + ListOf(types, typical) + ']', ListOf(types, typical));
  add("[]", ListOf(types, nothing));
  add('[' + typical(types[0], 0) + ']',
      ListOf(types, [&](char type, std::size_t i) { return i == 0 ? typical(type, 0) : Nothing(type); }));
  add('[' + ListOf(types, [](char type, std::size_t) { return Wrong(type); }) + ']', ListOf(types, nothing));
  for (const char lone : std::set(types.begin(), types.end())) {
    const std::string value = Typical(lone, 0);
    add(value, ListOf(types, [&](char type, std::size_t) { return type == lone ? value : Nothing(type); }));
  }
  return exchanges;
}

template <std::size_t N>
std::vector<Exchange> ExchangesOf(const ContractCase (&cases)[N]) {
  std::vector<Exchange> exchanges;
  for (const auto& row : cases) {
    exchanges.push_back({row.method, row.arguments, row.reply, Split(row.calls, " | ")});
  }
  return exchanges;
}

class ContractTest : public ServerTest {
 protected:
  // From here on every entry that has a result answers so and does nothing else.
  void SetResults(std::int64_t result) {
    std::string members;
    for (const auto& method : AllMethods()) {
      for (const auto& entry : method.entries) {
        members += (members.empty() ? "" : ",") + Quoted(entry) + ':' + std::to_string(result);
      }
    }
    SetParams(R"("sim.results":{)" + members + '}');
  }

  // Sends all at once; what is never answered shows in the answers that come behind it.
  void Check(const std::vector<Exchange>& exchanges) {
    ASSERT_EQ(Call("Connect"), "null");  // behind what the server does of itself
    const std::size_t before = server_->Journal().size();
    const auto replies = std::make_shared<Replies>();
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      session_->CallAsync(exchanges[i].method, exchanges[i].arguments,
                          [replies, i](const Reply& reply) { replies->Add(i, reply); });
    }
    const auto answered = std::ranges::count_if(exchanges, [](const auto& row) { return row.reply != "never"; });
    ASSERT_EQ(Call("Connect"), "null");
    EXPECT_TRUE(WaitUntil([&] { return std::ssize(replies->All()) >= answered; }));
    CheckReplies(exchanges, replies->All());
    CheckCalls(exchanges, server_->Journal(), before);
  }

 private:
  class Replies {
   public:
    void Add(std::size_t call, const Reply& reply) {
      const std::lock_guard lock(mutex_);
      replies_.emplace_back(call, reply);
    }
    [[nodiscard]] std::vector<std::pair<std::size_t, Reply>> All() {
      const std::lock_guard lock(mutex_);
      return replies_;
    }

   private:
    std::mutex mutex_;  // guards replies_
    std::vector<std::pair<std::size_t, Reply>> replies_;
  };

  static void CheckReplies(const std::vector<Exchange>& exchanges,
                           const std::vector<std::pair<std::size_t, Reply>>& replies) {
    std::vector<std::string> got(exchanges.size(), "never");
    std::size_t last = 0;
    for (const auto& [call, reply] : replies) {
      const Exchange& exchange = exchanges[call];
      got[call] = reply.content;
      const bool later = exchange.method.ends_with("Thumbnail");
      EXPECT_EQ(reply.key, later                                          ? ""
                           : exchange.method == "setVideoCaptureRotation" ? "SetVideoCaptureRotation"
                                                                          : exchange.method);
      if (later) continue;
      EXPECT_GE(call, last) << exchange.method << " is answered too late";
      last = call;
    }
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      EXPECT_TRUE(Matches(got[i], exchanges[i].reply))
          << exchanges[i].method << ' ' << exchanges[i].arguments << "\nanswered " << got[i] << "\nnot      "
          << exchanges[i].reply;
    }
  }

  static void CheckCalls(const std::vector<Exchange>& exchanges, const std::vector<std::string>& journal,
                         std::size_t at) {
    for (const auto& exchange : exchanges) {
      for (const auto& call : exchange.calls) {
        const auto space = call.find(' ');
        const std::string line =
            R"({"entry":")" + call.substr(0, space) + R"(","args":[)" + call.substr(space + 1) + "]}";
        ASSERT_LT(at, journal.size()) << exchange.method;
        ASSERT_TRUE(Matches(journal[at], line))
            << exchange.method << ' ' << exchange.arguments << "\ncalled " << journal[at] << "\nnot    " << line;
        ++at;
      }
    }
    EXPECT_EQ(at, journal.size()) << "more was called: " << journal[at];
  }
};

constexpr char kScene[] =
    R"("sim.devices":[{"type":0,"id":"mic","name":"Mic","isBuiltin":true}],"sim.screens":{)"
    R"("desktops":[{"id":5,"primary":1,"x":-10,"y":20,"width":640,"height":480}],"windows":[{"id":6,"pid":60,)"
    R"("application":"App","title":"Title","x":1,"y":2,"width":3,"height":4}]})";

TEST_F(ContractTest, EveryMethodAnswersAndCallsTheEngineAsPromised) {
  StartServer(kScene, R"("appVersion":"1.2","vendorTypeConfig":{"isMediaOversea":true})");
  ASSERT_NO_FATAL_FAILURE(Connect());
  std::set<std::string> special{"DestroyServer"};  // below
  for (const auto& row : kCases) special.insert(row.method);
  for (const auto& row : kCasesOfFailure) special.insert(row.method);
  const auto plain = [&](std::int64_t result) {
    std::vector<Exchange> exchanges;
    for (const auto& method : AllMethods()) {
      if (special.contains(method.name)) continue;
      for (auto& exchange : PlainExchanges(method, result)) exchanges.push_back(std::move(exchange));
    }
    return exchanges;
  };
  SetResults(0);
  ASSERT_NO_FATAL_FAILURE(Check(ExchangesOf(kCases)));
  ASSERT_NO_FATAL_FAILURE(Check(plain(0)));
  SetResults(kFailure);
  ASSERT_NO_FATAL_FAILURE(Check(ExchangesOf(kCasesOfFailure)));
  SetResults(kFailure);
  ASSERT_NO_FATAL_FAILURE(Check(plain(kFailure)));
}

// It reaches the engine, and ends neither the session nor the process.
TEST_F(ContractTest, DestroyServerIsARequestLikeOthers) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_EQ(Call("DestroyServer"), "null");
  EXPECT_EQ(Call("Connect"), "null");
  EXPECT_EQ(server_->Calls("DestroyServer").size(), 1u);
  tracker_.reset();
  session_.reset();
  EXPECT_EQ(server_->Host().Wait(), 0) << server_->Host().Err();
  server_.reset();  // the engine takes offence at its second end
}

}  // namespace
}  // namespace integration
