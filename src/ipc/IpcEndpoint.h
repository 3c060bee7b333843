#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "IpcInterfaces.h"
#include "NamedPipe.h"
#include "task/Thread.h"

namespace TESSARIN_COMMON {

// What the four endpoints share: a transport, a thread that reads it, and the owner's delegate. Start, Stop and the
// destructor are the owner's thread's, never the endpoint's own; any thread sends. The delegate outlives the endpoint.
class IpcEndpoint : public IIpcDataNotify, public IIpcErrorReporter, public TESSARIN_TASK::Runnable {
 public:
  static constexpr int kFramed = 1;  // any other mode is raw

  IpcEndpoint(const IpcEndpoint&) = delete;
  IpcEndpoint& operator=(const IpcEndpoint&) = delete;

  // Comes before the start, which fails without one, and not again.
  void SetDelegate(IIPCDelegate* delegate) { delegate_ = delegate; }
  // One message, framed in mode kFramed. True if the transport accepted it; else it is lost.
  bool Send(const char* data, std::uint32_t length);
  // Sends what the transport keeps back for a moment; before the process ends. Any thread.
  void Flush() const { pipe_->Flush(); }

  void OnIpcData(const char* data, std::uint32_t length) override;
  void OnIpcError(std::int32_t code, const char* text) override;
  void Run(TESSARIN_TASK::Thread* thread) final;

 protected:
  IpcEndpoint(std::unique_ptr<NamedPipe> pipe, int mode, const char* threadName);
  ~IpcEndpoint() override;

  // Posts a read past the endpoint's own reading.
  bool Receive(void* buffer, std::uint32_t size) { return pipe_->RecvData(buffer, size); }
  void SetRecvHandler(std::unique_ptr<IIpcRecvHandler> handler);

  // Clears the stop flag for a new start; false without a delegate, and while an earlier start still runs.
  [[nodiscard]] bool PrepareStart();
  [[nodiscard]] bool StartThread();
  void StopThread();
  // The body of the thread.
  virtual void RunSessions() = 0;
  // Reads one connection to its end, with the handler or raw.
  void ReadSession();

  IIPCDelegate* delegate_ = nullptr;
  const std::unique_ptr<NamedPipe> pipe_;
  std::atomic<bool> stop_{false};

 private:
  const int mode_;
  const char* const threadName_;
  std::unique_ptr<IIpcRecvHandler> handler_;
  std::atomic<bool> running_{false};
  std::unique_ptr<TESSARIN_TASK::Thread> thread_;
};

}  // namespace TESSARIN_COMMON
