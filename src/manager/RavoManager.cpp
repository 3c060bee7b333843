#include "RavoManager.h"

#include <stdexcept>
#include <utility>

#include "DeviceManager.h"
#include "EngineOptions.h"
#include "MeetingManager.h"
#include "ScreenManager.h"
#include "SubscribeManager.h"
#include "common/Clock.h"
#include "engine/EngineApi.h"
#include "ipc/EventArguments.h"
#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_COMMON::Clock;
using TESSARIN_COMMON::EventArguments;
using TESSARIN_LOG::Log;
using TESSARIN_TASK::Location;
using TESSARIN_TASK::TaskRunner;

std::atomic<RavoManager::UninitCallback> uninitCallback{nullptr};

// Where the tasks are posted, as the budget lines show it.
constexpr Location kInitPlace{"RavoManager::init", "src/manager/RavoManager:91"};
constexpr Location kDestroyPlace{"RavoManager::DestroyServer", "src/manager/RavoManager:153"};

}  // namespace

void RavoManager::SetUninitCallback(UninitCallback callback) {
  uninitCallback = callback;
}

void RavoManager::CallUninitCallback() {
  const UninitCallback callback = uninitCallback;
  if (callback == nullptr) return;
  Log("cb uninit callback");
  callback();
}

// The runner fixes both budgets at these values, whatever it is given.
RavoManager::RavoManager()
    : timerRunner(std::make_unique<TESSARIN_TASK::TimerTaskRunner>()),
      taskRunner(std::make_unique<TaskRunner>(TaskRunner::kMain)) {
  taskRunner->SetWaitingBudget(300);
  taskRunner->SetRunningBudget(200);
  if (!taskRunner->StartRunner()) throw std::runtime_error("no thread for the tasks");
  if (!timerRunner->StartRunner({}, {})) {
    taskRunner->StopRunner();  // whoever goes without it must not leave its thread behind
    throw std::runtime_error("no thread for the timers");
  }
  AddOwn(handlers, *this, OwnRequests());
}

RavoManager::~RavoManager() {
  Log("~RavoManager");
}

void RavoManager::init(const TESSARIN_COMMON::ServerOption& option) {
  serverOption = option;
  MakeManagers();
  LoadEngine();
  frameSlots = std::make_shared<slots::VideoFrameSlots>(
      serverOption.serverName, [](std::int64_t op, const std::vector<slots::ShareMemoryInfo>& records) {
        StreamOnFrameEventShareMemoryUpdate(op, records);
      });
  StartFrameTick();
  taskRunner->PostTask(kInitPlace, [this] { InitTask(); });
  messageLoop.Attach();
  SetDpiAwareness();
  Log("RavoManager  start event loop");
  messageLoop.Run();
}

void RavoManager::MakeManagers() {
  deviceManager = std::make_unique<DeviceManager>();
  meetingManager = std::make_unique<MeetingManager>();
  screenManager = std::make_unique<ScreenManager>();
  subscribeManager = std::make_unique<SubscribeManager>();
  meetingMonitor = std::make_unique<QX_MONITOR::MeetingMonitor>(
      [this](const std::string& itemsJson) { SendEvent("MeriTrackList", EventArguments().AddRaw(itemsJson).Print()); },
      *timerRunner);
  subscribeManager->ApplyOptions(serverOption);
}

// A library that is not found is only logged, and the first call into its table then faults.
void RavoManager::LoadEngine() {
  const bool loaded = EngineApi::GetInstance().Load(serverOption.manuallyDylibPath + kEngineFileSuffix);
  Log("Initialize vemora lib ret:{}", loaded);
}

void RavoManager::StartFrameTick() {
  constexpr std::int64_t kTickWithoutFpsMs = 17;
  const std::int64_t intervalMs = fps != 0 ? 1000 / fps : kTickWithoutFpsMs;
  frameTickTimerId = timerRunner->AddTimer(static_cast<std::uint32_t>(intervalMs), [this] {
    if (frameSlots != nullptr) frameSlots->Tick();
  });
}

// The endpoint opens before the engine's RTC part is initialised, so the first requests of a client may queue behind
// this task.
void RavoManager::InitTask() {
  const std::int64_t beginMs = Clock::System().SteadyMs();
  Log("begin vemorainit");
  setServerOption(serverOption);
  const auto& api = EngineApi::GetInstance();
  api.VemoraInit(3, 0);
  deviceManager->Register();
  meetingManager->Register();
  screenManager->Register();
  subscribeManager->Register();
  Log("[RavoManager::init]options{}", serverOption.ipcPath);
  if (!StartIpcServer()) {
    Log("start ipc server failed");
    return;
  }
  api.VemoraInitRtc();
  api.VemoraInitDevice();
  api.SetRtcRuntimeParameter("", R"({"rtc.service_type": "live"})");
  initCostMs = Clock::System().SteadyMs() - beginMs;
}

bool RavoManager::StartIpcServer() {
  ipcServer = std::make_unique<TESSARIN_COMMON::IPCServer>(serverOption.ipcPath);
  ipcServer->SetDelegate(this);
  // A client that connects at once must not find its first messages dropped, so the flag goes up with the start and
  // comes down again if that fails.
  m_bInitIpcServer.exchange(true);
  if (ipcServer->Start()) return true;
  m_bInitIpcServer = false;
  return false;
}

void RavoManager::DestroyServer() {
  Log("RavoManager::DestroyServer0");
  taskRunner->PostTask(kDestroyPlace, [this] { StopTask(); });
}

// Nothing is taken down in order: exit runs here while all other threads still do, and they may go on to the last.
void RavoManager::StopTask() {
  if (m_bStopServer) {
    Log("RavoManager::DestroyServer m_bStopServer is true, so return");
    return;
  }
  m_bStopServer = true;
  Log("RavoManager::DestroyServer1");
  const auto& api = EngineApi::GetInstance();
  if (api.DestroyServer) api.DestroyServer();  // a host may stop before it has started
  Log("RavoManager::DestroyServer2");
  CallUninitCallback();
  messageLoop.Quit();
  Log("RavoManager::DestroyServer3");
  if (ipcServer != nullptr) ipcServer->Flush();
  EndProcess();
}

void RavoManager::SendDataToIpc(const char* data, std::uint32_t length) {
  if (!m_bInitIpcServer) {
    Log("[SendDataToIpc] m_bInitIpcServer is false, so return, length:{}", length);
    return;
  }
  const bool sent = ipcServer->Send(data, length);
  Log("SendDataToIpc bRet:{}, length:{}, data:{}", sent, length, std::string_view(data, length));
}

void RavoManager::SendEnvelope(const IPCData& envelope) {
  const std::string text = TESSARIN_COMMON::Serialize(envelope);
  SendDataToIpc(text.data(), static_cast<std::uint32_t>(text.size()));
}

void RavoManager::SendEvent(std::string_view name, std::string content) {
  SendEnvelope(TESSARIN_COMMON::MakeEvent(name, std::move(content)));
}

}  // namespace TESSARIN_LUMARC
