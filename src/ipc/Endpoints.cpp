#include <utility>

#include "IPCClient.h"
#include "IPCServer.h"
#include "InheritIPCClient.h"
#include "InheritIPCServer.h"

namespace TESSARIN_COMMON {

namespace {
constexpr const char* kThreadName = "vemora_ipc_thread";
constexpr const char* kInheritThreadName = "vemora_inherit_ipc_thread";
}  // namespace

IPCServer::IPCServer(std::string pipeName)
    : ServerEndpoint(std::make_unique<NamedPipeServer>(std::move(pipeName)), kThreadName, Reports::Never) {}

InheritIPCServer::InheritIPCServer(NamedPipe::Handle pipe)
    : ServerEndpoint(std::make_unique<NamedPipeServer>(pipe), kInheritThreadName, Reports::FirstSession) {}

IPCClient::IPCClient(std::string pipeName, int mode)
    : ClientEndpoint(std::make_unique<NamedPipeClient>(std::move(pipeName)), mode, kThreadName) {
  Pipe().SetErrorReporter(this);
}

InheritIPCClient::InheritIPCClient(NamedPipe::Handle pipe)
    : ClientEndpoint(std::make_unique<NamedPipeClient>(pipe), kFramed, kInheritThreadName) {}

bool InheritIPCClient::Start() {
  Pipe().SetErrorReporter(this);
  return ConnectAndRun(0);
}

}  // namespace TESSARIN_COMMON
