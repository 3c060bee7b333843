// The session with the client: what comes in, who handles it, what goes out first and last.
#include <exception>
#include <string>

#include "DeviceManager.h"
#include "MeetingManager.h"
#include "RavoManager.h"
#include "ScreenManager.h"
#include "SubscribeManager.h"
#include "common/Clock.h"
#include "common/JsonWriter.h"
#include "common/Platform.h"
#include "ipc/EventArguments.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_COMMON::Clock;
using TESSARIN_COMMON::EventArguments;
using TESSARIN_LOG::Log;
using TESSARIN_LOG::LogAt;
using TESSARIN_TASK::Location;

constexpr Location kConnectedPlace{"RavoManager::OnConnected", "src/manager/RavoManager:562"};
constexpr Location kReceivedPlace{"RavoManager::OnDataReceived", "src/manager/RavoManager:597"};

constexpr std::int64_t kSlowRequestNs = 301'000'000;

}  // namespace

void RavoManager::OnConnected() {
  clientConnected = true;
  Log("ipc client connected");
  SendEnvelope(TESSARIN_COMMON::MakeSessionEvent("connect", R"(["vc"])"));
  meetingMonitor->AddMonitorInfo(TESSARIN_COMMON::CurrentProcessId(), "ravo_native");
  taskRunner->PostTask(kConnectedPlace, [this] {
    BroadcastInit();
    ReportInitCost();
  });
}

// Comes after whatever queued before it, so a client that connects during the init task hears of the finished start.
void RavoManager::BroadcastInit() {
  Log("start send init");
  const std::string record = TESSARIN_COMMON::JsonText(FillServerInformation());
  SendEnvelope(TESSARIN_COMMON::MakeSessionEvent("INIT", EventArguments().AddRaw(record).Print()));
}

void RavoManager::ReportInitCost() {
  DevicePerformance machine{};
  EngineApi::GetInstance().GetDevicePerformanceInfos(&machine);
  meetingMonitor->ReportInitCost(initCostMs, machine);
}

// The client's departure stops the server.
void RavoManager::OnDisconnect() {
  Log("ipc client disConnected");
  SendEvent("OnDisconnect", "[]");
  DestroyServer();
}

// Copies and posts, so that the reading of frames goes on.
void RavoManager::OnDataReceived(const char* data, std::uint32_t length) {
  Log("OnDataReceived length:{}, data:{}", length, std::string_view(data, length));
  taskRunner->PostTask(kReceivedPlace, [this, body = std::string(data, length)] { handleIpcData(body); });
}

void RavoManager::OnErrorReport(std::int32_t code, const char* text) {
  LogAt("Ravo", TESSARIN_LOG::Level::Failure, "[RavoManager] OnErrorReport, err_code={}, err_msg={}.", code,
        text != nullptr ? text : "");
}

void RavoManager::handleIpcData(const std::string& body) {
  IPCData request;
  try {
    TESSARIN_COMMON::ParseIpcData(body, request);
  } catch (const std::exception& error) {
    Log("[handleIpcData]: parse IPCData error exception:{}", error.what());  // goes on with what was read
  }
  request.message_key = TESSARIN_COMMON::MessageKeyToMethodName(request.message_key);
  Log("handleIpcData recv msgType:{},taskId:{},content:{}", request.message_key, request.taskId, request.content);
  std::int64_t beginNs = 0;
  try {
    request.parsed.Parse(request.content);
    beginNs = Clock::System().SteadyNs();
    Dispatch(request);
  } catch (const std::exception& error) {
    // A content that is no JSON, or what a handler throws, ends the process, since nobody catches it from here on: the
    // client has lost its way, and the pipe that closes tells it so. The line also brings those before it to the file.
    LogAt("Ravo", TESSARIN_LOG::Level::Failure, "[handleIpcData]: {} of {} cannot be handled, the process ends: {}",
          request.taskId, request.message_key, error.what());
    if (ipcServer != nullptr) ipcServer->Flush();  // the answers to those before it
    throw;
  }
  const std::int64_t costNs = Clock::System().SteadyNs() - beginNs;
  if (costNs >= kSlowRequestNs) meetingMonitor->ReportFunctionCost(request.message_key, costNs / 1'000'000);
}

void RavoManager::Dispatch(IPCData& request) {
  if (const auto own = handlers.find(request.message_key); own != handlers.end()) return own->second(request);
  const bool handled = meetingManager->handle(request) || screenManager->handle(request) ||
                       deviceManager->handle(request) || subscribeManager->handle(request);
  if (handled) return;
  request.content = "handle not found name" + request.message_key;
  request.message_type = TESSARIN_COMMON::kMessageCallResponseError;
  SendEnvelope(request);
  Log("handleIpcData not handle this func:{}", request.message_key);
}

}  // namespace TESSARIN_LUMARC
