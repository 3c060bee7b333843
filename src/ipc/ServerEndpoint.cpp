#include "ServerEndpoint.h"

#include <utility>

namespace TESSARIN_COMMON {

ServerEndpoint::ServerEndpoint(std::unique_ptr<NamedPipeServer> pipe, const char* threadName, Reports reports)
    : IpcEndpoint(std::move(pipe), kFramed, threadName), reports_(reports) {}

bool ServerEndpoint::Start() {
  if (!PrepareStart()) return false;
  if (reports_ == Reports::FirstSession) Pipe().SetErrorReporter(this);
  return StartThread();
}

void ServerEndpoint::RunSessions() {
  while (!stop_) {
    if (!Pipe().Open()) return;
    if (stop_) return;  // the stop came before there was anything to wake
    if (!Pipe().WaitConnect()) {
      if (!stop_) Pipe().Close();  // nobody will wait again, so nobody shall find the name
      return;
    }
    delegate_->OnConnected();
    ReadSession();
    if (!stop_) {
      Pipe().Disconnect();
      DropReporter();
      Pipe().Close();
    }
    delegate_->OnDisconnect();
  }
}

bool ServerEndpoint::Stop() {
  stop_ = true;
  if (!Pipe().Disconnect()) return false;
  DropReporter();
  StopThread();
  return Pipe().Close();
}

void ServerEndpoint::End() {
  DropReporter();
  stop_ = true;
  Pipe().Disconnect();
  StopThread();
}

void ServerEndpoint::DropReporter() {
  if (reports_ == Reports::FirstSession) Pipe().SetErrorReporter(nullptr);
}

}  // namespace TESSARIN_COMMON
