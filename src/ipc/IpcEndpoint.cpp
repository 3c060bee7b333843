#include "IpcEndpoint.h"

#include <new>
#include <utility>

#include "IpcRecvHander.h"

namespace TESSARIN_COMMON {

IpcEndpoint::IpcEndpoint(std::unique_ptr<NamedPipe> pipe, int mode, const char* threadName)
    : pipe_(std::move(pipe)), mode_(mode), threadName_(threadName) {
  if (mode_ == kFramed) SetRecvHandler(std::make_unique<IpcRecvHander>());
}

IpcEndpoint::~IpcEndpoint() = default;

void IpcEndpoint::SetRecvHandler(std::unique_ptr<IIpcRecvHandler> handler) {
  if (handler != nullptr) handler->SetDataRecv(pipe_.get());
  handler_ = std::move(handler);
}

bool IpcEndpoint::Send(const char* data, std::uint32_t length) {
  if (mode_ != kFramed) return pipe_->Send(data, length);
  char prefix[4];
  for (int i = 0; i < 4; ++i) prefix[i] = static_cast<char>(length >> (8 * i) & 0xFF);
  return pipe_->SendFrame(prefix, {data, length});
}

void IpcEndpoint::OnIpcData(const char* data, std::uint32_t length) {
  if (delegate_ != nullptr) delegate_->OnDataReceived(data, length);
}

void IpcEndpoint::OnIpcError(std::int32_t code, const char* text) {
  if (delegate_ != nullptr) delegate_->OnErrorReport(code, text);
}

bool IpcEndpoint::PrepareStart() {
  if (delegate_ == nullptr || running_) return false;
  if (thread_ != nullptr) thread_->Join();  // it has run to its end
  stop_ = false;
  return true;
}

bool IpcEndpoint::StartThread() try {
  thread_ = std::make_unique<TESSARIN_TASK::Thread>();
  thread_->SetName(threadName_);
  running_ = true;
  if (thread_->Start(this)) return true;
  running_ = false;
  return false;
} catch (const std::bad_alloc&) {
  return false;
}

void IpcEndpoint::StopThread() {
  if (thread_ != nullptr) thread_->StopAndJoin();
}

void IpcEndpoint::Run(TESSARIN_TASK::Thread*) {
  RunSessions();
  running_ = false;
}

void IpcEndpoint::ReadSession() {
  if (handler_ != nullptr) {
    handler_->HandleRecv(this);
  } else {
    pipe_->RecvRaw(this);
  }
}

}  // namespace TESSARIN_COMMON
