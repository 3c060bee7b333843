// A whole server with the simulated engine and a client. The input is a sequence of requests, one a line: a method's
// name, a blank and the content, or a body as it stands. The server lives on from input to input.
#include <algorithm>
#include <exception>
#include <future>
#include <thread>

#include "Fuzzer.h"
#include "common/JsonWriter.h"
#include "common/Platform.h"
#include "ipc/IPCClient.h"
#include "manager/RavoManager.h"

namespace {

using TESSARIN_COMMON::IPCData;
using TESSARIN_LUMARC::RavoManager;

constexpr const char* kParams = R"({"sim.room":{"participants":[
    {"userId":"ann","encodings":[{"width":64,"height":36,"frameRate":30},{"width":32,"height":18,"frameRate":30}]},
    {"userId":"ann","streamIndex":1,"encodings":[{"width":64,"height":36,"frameRate":10}]},
    {"userId":"bob","encodings":[{"width":32,"height":18,"frameRate":30}]}]}})";

// Reads whatever the server sends. What it cannot read ends the run.
class Client final : public TESSARIN_COMMON::IIPCDelegate {
 public:
  void OnConnected() override {}
  void OnDisconnect() override {}
  void OnErrorReport(std::int32_t, const char*) override {}
  void OnDataReceived(const char* data, std::uint32_t length) override {
    IPCData message;
    TESSARIN_COMMON::ParseIpcData({data, length}, message);
    if (message.message_type != TESSARIN_COMMON::kMessageCallResponseError) message.parsed.Parse(message.content);
    if (message.message_key == "INIT") started_.set_value();
  }
  void WaitForStart() { started_.get_future().wait(); }

 private:
  std::promise<void> started_;
};

// None of it ever ends: the fuzzers' driver does, by exit.
void StartServer() {
  TESSARIN_COMMON::ServerOption option;
  option.ipcPath = "fuzz-" + std::to_string(TESSARIN_COMMON::CurrentProcessId());
  option.manuallyDylibPath = ENGINE_FOLDER;
  option.rtcParams = kParams;
  std::thread([option] { RavoManager::GetInstance().init(option); }).detach();
  auto* const client = new Client;
  auto* const endpoint = new TESSARIN_COMMON::IPCClient(option.ipcPath, TESSARIN_COMMON::IPCClient::kFramed);
  endpoint->SetDelegate(client);
  fuzz::Expect(endpoint->Start(60), "the server can be reached");
  client->WaitForStart();
}

std::string Body(std::string_view line) {
  if (line.starts_with('{')) return std::string(line);
  const std::size_t end = std::min(line.find(' '), line.size());
  IPCData request;
  request.message_key = line.substr(0, end);
  request.content = line.substr(std::min(end + 1, line.size()));
  return Serialize(request);
}

// On "main_thread", which a message that ends the process would leave by its exception.
void HandleAll(std::string_view lines) {
  try {
    while (!lines.empty()) {
      const std::size_t end = std::min(lines.find('\n'), lines.size());
      RavoManager::GetInstance().handleIpcData(Body(lines.substr(0, end)));
      lines.remove_prefix(std::min(end + 1, lines.size()));
    }
  } catch (const std::exception&) {
    // The process would be gone; here the next input finds the server as this one has left it.
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  StartServer();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  RavoManager::GetInstance().Tasks().PostTaskAndWait({}, [=] { HandleAll(fuzz::Text(data, size)); });
  return 0;
}
