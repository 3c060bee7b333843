// A whole server in a process of its own and a client that asks it, with each call of the system and each piece of
// memory that this costs the server failing once.
#include <atomic>
#include <cstdlib>
#include <exception>
#include <thread>

#include "../integration/RawLink.h"
#include "../integration/ServerProcess.h"
#include "FaultTest.h"
#include "ipc/IPCData.h"
#include "manager/RavoManager.h"
#include "support/LogCapture.h"
#include "support/PipeName.h"

namespace {

using faults::Case;
using integration::RawLink;

struct Exchange {
  const char* key;
  std::string content;
  std::string reply;  // empty for any
};

std::string ManyChannels() {
  std::string list;
  for (int i = 0; i < 12; ++i) {
    list += (i == 0 ? "" : ",") + std::string(R"({"channelName":"the channel with the number )") + std::to_string(i) +
            R"(","volumeScale":50})";
  }
  return "[[" + list + "]]";
}

// Lets the engine call back, on a thread of its own.
Exchange Fire(const std::string& user) {
  const std::string params = R"({"sim.fire":[{"entry":"OnUserLeave","args":[")" + user + R"(",0]}]})";
  return {"update_server_option", R"({"rtcParams":)" + integration::Quoted(params) + "}", "null"};
}

const std::vector<Exchange>& Requests() {
  static const std::vector<Exchange> requests = {{"set_playback_digital_mute", "[true]", "0"},
                                                 {"set_sub_channels", ManyChannels(), "0"},
                                                 {"get_init_info", "[]", ""},
                                                 {"no_such_method", "[]", "handle not found nameNoSuchMethod"},
                                                 Fire("ann"),
                                                 {"connect", "[]", "null"}};
  return requests;
}

void Send(RawLink& link, const Exchange& request, std::size_t number) {
  link.Send(RawLink::Framed(RawLink::Request(request.key, request.content, static_cast<std::int64_t>(number))));
}

// Until everything has come, or an answer to what is asked once a call has failed: what has not come then is lost.
std::string ReadAnswers(RawLink& link) {
  const auto& requests = Requests();
  std::size_t replies = 0;
  std::size_t last = 0;
  bool ann = false;
  bool bob = false;
  while ((replies < requests.size() || !ann) && (last <= requests.size() || !bob)) {
    const auto body = link.Receive();
    if (!body) return "closed";
    TESSARIN_COMMON::IPCData message;
    ParseIpcData(*body, message);
    ann = ann || message.content.starts_with(R"(["ann")");
    bob = bob || message.content.starts_with(R"(["bob")");
    if (message.message_type == TESSARIN_COMMON::kMessageEvent) continue;
    const auto number = static_cast<std::size_t>(message.taskId);
    if (number <= last) return "replies out of order";
    last = number;
    if (number > requests.size()) continue;
    ++replies;
    const std::string& reply = requests[number - 1].reply;
    if (!reply.empty() && reply != message.content) return "wrong reply to " + message.message_key;
  }
  if (replies < requests.size()) return "a reply is lost";
  return ann ? "done" : "an event is lost";
}

// Asks everything at once, behind the last word of the server's start.
std::string Ask(const std::string& pipe, const std::function<void()>& arm) {
  RawLink link(pipe);
  for (auto body = link.Receive(); body && body->find("ravo_init_total_time_ms") == std::string::npos;) {
    body = link.Receive();
  }
  arm();
  std::size_t number = 0;
  for (const auto& request : Requests()) Send(link, request, ++number);
  std::atomic<bool> answered{false};
  std::thread asking([&] {
    while (!faults::HasFired() && !answered) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (faults::HasFired()) Send(link, Fire("bob"), number + 1);
  });
  const std::string outcome = ReadAnswers(link);
  faults::Disarm();
  answered = true;
  asking.join();
  return outcome;
}

const support::LogCapture* serverLog = nullptr;  // the child's

// Tells whether the log has a line of the loss. A session that has ended loses messages too, which are not meant.
void TellOfLosses(const std::string& call) {
  for (const auto& text : serverLog->Texts()) {
    const bool unsent = text.starts_with("SendDataToIpc bRet:false") &&
                        (text.find("RESPONSE") != std::string::npos || text.find("USER_LEAVE") != std::string::npos);
    const bool noMemory = text.ends_with("does not fit into the memory, the session ends") ||
                          text.starts_with("UpdateServerOption: the keys cannot be read");
    if (unsent || (call == faults::kMemory && noMemory)) return faults::Tell(", with its line");
  }
}

// What was thrown is caught by nobody: the stated end of the process where there is no memory.
[[noreturn]] void EndProcess() {
  try {
    std::rethrow_exception(std::current_exception());
  } catch (const std::exception& error) {
    const bool told = serverLog->Has("[handleIpcData]: parse IPCData error exception:std::bad_alloc");
    faults::Tell(told ? ", std::bad_alloc" : std::string(", ") + error.what());
  }
  std::_Exit(0);
}

std::string Serve(const char* call, const std::string& pipe) {
  static const char* failing = call;
  serverLog = new support::LogCapture;
  std::atexit([] { TellOfLosses(failing); });
  std::set_terminate(EndProcess);
  TESSARIN_COMMON::ServerOption option;
  option.ipcPath = pipe;
  option.manuallyDylibPath = integration::ServerProcess::EngineFolder();
  TESSARIN_LUMARC::RavoManager::GetInstance().init(option);
  return "the server has returned";
}

using ServerFault = faults::FaultTest;

TEST_P(ServerFault, CostsAMessageOrTheSessionOrEndsTheProcessByItsText) {
  const std::string pipe = support::UniquePipeName();
  faults::ExpectOutcomes(
      GetParam(), [&] { return Serve(GetParam().call, pipe); }, [&](const auto& arm) { return Ask(pipe, arm); });
}

// "done" without sendmsg: it was for a late message of the start, or one to the client that is leaving. With recvmsg
// the session ends, before or behind the answers to what it has read.
INSTANTIATE_TEST_SUITE_P(All, ServerFault,
                         testing::Values(Case{"sendmsg",
                                              {"a reply is lost, with its line", "an event is lost, with its line"},
                                              {"done", "done, with its line"}},
                                         Case{"recvmsg", {"closed"}, {"closed, with its line"}},
                                         Case{faults::kMemory,
                                              {"closed, with its line", "closed, std::bad_alloc",
                                               "a reply is lost, with its line", "an event is lost"},
                                              {"done", "done, with its line", "an event is lost, with its line"}}),
                         faults::NameOf);

TEST(ServerStartFault, OfAThreadIsToldToTheHost) {
  faults::ExpectOutcomes({"pthread_create", {"no thread for the tasks", "no thread for the timers"}}, [] {
    try {
      TESSARIN_LUMARC::RavoManager::GetInstance();
    } catch (const std::runtime_error& error) {
      return std::string(error.what());
    }
    return std::string("done");
  });
}

}  // namespace
