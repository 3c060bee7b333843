#pragma once

#include "ClientEndpoint.h"

namespace TESSARIN_COMMON {

// A framed client over a pipe handle that the process already owns, for one session.
class InheritIPCClient final : public ClientEndpoint {
 public:
  explicit InheritIPCClient(NamedPipe::Handle pipe);
  ~InheritIPCClient() override { End(); }

  bool Start();
};

}  // namespace TESSARIN_COMMON
