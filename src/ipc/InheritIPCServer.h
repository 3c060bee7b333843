#pragma once

#include "ServerEndpoint.h"

namespace TESSARIN_COMMON {

// A framed server over a pipe handle that the process already owns. The handle lasts for one session; failures are
// reported until that session is over.
class InheritIPCServer final : public ServerEndpoint {
 public:
  explicit InheritIPCServer(NamedPipe::Handle pipe);
  ~InheritIPCServer() override { End(); }
};

}  // namespace TESSARIN_COMMON
