#pragma once

#include <string>

#include "ServerEndpoint.h"

namespace TESSARIN_COMMON {

// The server's endpoint: framed, over a pipe of that name, for one client after the other. It never registers with its
// transport as the reporter, so a failing pipe shows as the end of a session and in no other way.
class IPCServer final : public ServerEndpoint {
 public:
  explicit IPCServer(std::string pipeName);
  ~IPCServer() override { End(); }

  using IpcEndpoint::Receive;
  using IpcEndpoint::SetRecvHandler;
};

}  // namespace TESSARIN_COMMON
