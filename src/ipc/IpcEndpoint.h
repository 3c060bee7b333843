#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "IpcInterfaces.h"
#include "NamedPipe.h"
#include "task/Thread.h"

namespace TESSARIN_COMMON {

// What the four endpoints share: a transport, a thread that reads it, and the delegate of the owner. Any thread sends.
// Start and Stop are the owner's; the destructor stops and joins.
class IpcEndpoint : public IIpcDataNotify, public IIpcErrorReporter, public TESSARIN_TASK::Runnable {
 public:
  static constexpr int kFramed = 1;  // any other mode is raw

  IpcEndpoint(const IpcEndpoint&) = delete;
  IpcEndpoint& operator=(const IpcEndpoint&) = delete;

  // Not owned. Must come before the start, and not again.
  void SetDelegate(IIPCDelegate* delegate) { delegate_ = delegate; }
  // One message, framed in mode kFramed. True if the transport accepted it; lost if not.
  bool Send(const char* data, std::uint32_t length);
  // Posts a read on the transport, past the endpoint's own reading.
  bool Receive(void* buffer, std::uint32_t size) { return pipe_.RecvData(buffer, size); }
  void SetRecvHandler(std::unique_ptr<IIpcRecvHandler> handler) { handler_ = std::move(handler); }

  void OnIpcData(const char* data, std::uint32_t length) override;
  void OnIpcError(std::int32_t code, const char* text) override;

 protected:
  IpcEndpoint(NamedPipe& pipe, int mode, const char* threadName);
  ~IpcEndpoint() override = default;

  // False while an earlier session still runs.
  bool StartThread();
  void JoinThread();
  // Reads one connection to its end.
  void ReadSession();
  // The whole of a session's thread; ends with the last touch of the object.
  void Run(TESSARIN_TASK::Thread* thread) final;
  virtual void RunSessions() = 0;

  IIPCDelegate* delegate_ = nullptr;
  std::atomic<bool> stop_{false};

 private:
  NamedPipe& pipe_;  // the derived endpoint's
  const int mode_;
  const char* const threadName_;
  std::unique_ptr<IIpcRecvHandler> handler_;
  std::atomic<bool> running_{false};
  std::unique_ptr<TESSARIN_TASK::Thread> thread_;
};

}  // namespace TESSARIN_COMMON
