#include "ClientEndpoint.h"

#include <utility>

namespace TESSARIN_COMMON {

ClientEndpoint::ClientEndpoint(std::unique_ptr<NamedPipeClient> pipe, int mode, const char* threadName)
    : IpcEndpoint(std::move(pipe), mode, threadName) {}

bool ClientEndpoint::ConnectAndRun(std::uint32_t timeoutSeconds) {
  if (!PrepareStart() || !Pipe().Connect(timeoutSeconds)) return false;
  delegate_->OnConnected();
  return StartThread();
}

void ClientEndpoint::RunSessions() {
  ReadSession();
  if (stop_) return;
  Pipe().Disconnect();
  Pipe().SetErrorReporter(nullptr);
  delegate_->OnDisconnect();
}

bool ClientEndpoint::Stop() {
  stop_ = true;
  const bool disconnected = Pipe().Disconnect();
  Pipe().SetErrorReporter(nullptr);
  if (delegate_ != nullptr) delegate_->OnDisconnect();
  StopThread();
  return disconnected;
}

void ClientEndpoint::End() {
  Pipe().SetErrorReporter(nullptr);
  stop_ = true;
  Pipe().Disconnect();
  StopThread();
}

}  // namespace TESSARIN_COMMON
