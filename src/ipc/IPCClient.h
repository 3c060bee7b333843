#pragma once

#include <string>

#include "ClientEndpoint.h"

namespace TESSARIN_COMMON {

// The calling endpoint over a pipe of that name, framed in mode kFramed. Reports failures until its first stop or the
// end of its first session; a later start has no reporter.
class IPCClient final : public ClientEndpoint {
 public:
  IPCClient(std::string pipeName, int mode);
  ~IPCClient() override { End(); }

  bool Start(std::uint32_t timeoutSeconds) { return ConnectAndRun(timeoutSeconds); }

  using IpcEndpoint::Receive;
  using IpcEndpoint::SetRecvHandler;
};

}  // namespace TESSARIN_COMMON
