#pragma once

#include <ravo/platform.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "MessageLoop.h"
#include "Requests.h"
#include "ServerOption.h"
#include "ServerState.h"
#include "common/Singleton.h"
#include "ipc/IPCServer.h"
#include "monitor/MeetingMonitor.h"
#include "slots/VideoFrameSlots.h"
#include "task/TaskRunner.h"
#include "task/TimerTaskRunner.h"

namespace TESSARIN_LUMARC {

class DeviceManager;
class MeetingManager;
class ScreenManager;
class SubscribeManager;

// The server: owns the managers, the runners, the endpoint and the frame slots, for the life of the process, and is
// the endpoint's delegate. Every request comes in here and every reply and event leaves through SendDataToIpc.
//
// Threads: the host's runs init; "main_thread" runs the init task, all requests and the stop task; the IPC thread
// calls the delegate operations; engine threads send events. What several of them touch is atomic, or is set before
// the others start and only read afterwards.
class RavoManager final : public TESSARIN_COMMON::Singleton<RavoManager>, public TESSARIN_COMMON::IIPCDelegate {
 public:
  using UninitCallback = void(RAVO_CALL*)();

  // The host's farewell call; null for none. Comes before init.
  static void SetUninitCallback(UninitCallback callback);
  static void CallUninitCallback();

  // Builds the server and stays in the message loop. The host's thread.
  void init(const TESSARIN_COMMON::ServerOption& option);
  // Asks for the stop, which ends the process by exit(0) on "main_thread". Any thread; a second call does no harm.
  void DestroyServer();

  // Any thread. A message that cannot go out is lost, with a line in the log.
  void SendDataToIpc(const char* data, std::uint32_t length);
  void SendEnvelope(const IPCData& envelope);
  // Sends an event; `content` is the JSON array of its arguments.
  void SendEvent(std::string_view name, std::string content);

  [[nodiscard]] static std::span<const OwnRow<RavoManager>> OwnRequests();

  // The endpoint's delegate: the IPC thread, and testCallapi.
  void OnConnected() override;
  void OnDisconnect() override;
  void OnDataReceived(const char* data, std::uint32_t length) override;
  void OnErrorReport(std::int32_t code, const char* text) override;

  // Handles one message: what OnDataReceived posts. "main_thread" alone. What it throws ends the process.
  void handleIpcData(const std::string& body);

  [[nodiscard]] TESSARIN_TASK::TaskRunner& Tasks() { return *taskRunner; }
  [[nodiscard]] TESSARIN_TASK::TimerTaskRunner& Timers() { return *timerRunner; }
  [[nodiscard]] QX_MONITOR::MeetingMonitor& Monitor() { return *meetingMonitor; }
  [[nodiscard]] MeetingManager& Meeting() { return *meetingManager; }
  [[nodiscard]] ScreenManager& Screen() { return *screenManager; }
  [[nodiscard]] SubscribeManager& Subscriptions() { return *subscribeManager; }
  // "main_thread" changes them (UpdateServerOption); the host's thread sets them before that thread has work.
  [[nodiscard]] const TESSARIN_COMMON::ServerOption& Options() const { return serverOption; }
  // Null before init.
  [[nodiscard]] std::shared_ptr<slots::VideoFrameSlots> FrameSlots() const { return frameSlots; }

 private:
  friend class TESSARIN_COMMON::Singleton<RavoManager>;
  RavoManager();
  ~RavoManager() override;

  void MakeManagers();
  void LoadEngine();
  void StartFrameTick();
  void InitTask();
  bool StartIpcServer();
  void StopTask();

  void Dispatch(IPCData& request);
  void BroadcastInit();
  void ReportInitCost();
  [[nodiscard]] ServerInformation FillServerInformation();

  void Connect(IPCData& request);
  void MonitorAddProcess(IPCData& request);
  void UpdateServerOption(IPCData& request);
  void GetInitInfo(IPCData& request);
  void FetchAllStreamInfo(IPCData& request);
  void FetchStreamInfo(IPCData& request);
  void FetchServerState(IPCData& request);
  void SetFps(IPCData& request);

  std::unique_ptr<MeetingManager> meetingManager;
  std::unique_ptr<ScreenManager> screenManager;
  std::unique_ptr<DeviceManager> deviceManager;
  std::unique_ptr<SubscribeManager> subscribeManager;
  std::unique_ptr<QX_MONITOR::MeetingMonitor> meetingMonitor;
  std::unique_ptr<TESSARIN_TASK::TimerTaskRunner> timerRunner;
  std::unique_ptr<TESSARIN_TASK::TaskRunner> taskRunner;
  TESSARIN_COMMON::ServerOption serverOption;
  std::unique_ptr<TESSARIN_COMMON::IPCServer> ipcServer;
  bool clientConnected = false;  // set by the IPC thread and never cleared; for debuggers, nothing tests it
  HandlerMap handlers;
  std::int64_t initCostMs = 0;  // of the init task
  MessageLoop messageLoop;
  bool m_bStopServer = false;  // "main_thread" alone
  std::atomic<bool> m_bInitIpcServer{false};
  std::shared_ptr<slots::VideoFrameSlots> frameSlots;
  std::int32_t frameTickTimerId = -1;
  std::int64_t fps = 30;
};

}  // namespace TESSARIN_LUMARC
