#pragma once

#include <string>

#include "NamedPipe.h"

namespace TESSARIN_COMMON {

// The end that waits. Reusable: Open, WaitConnect, use, Disconnect, Close, and again. There is one client at a time,
// and between the sessions the name does not exist. An inherited handle serves for one session.
class NamedPipeServer final : public NamedPipe {
 public:
  explicit NamedPipeServer(std::string name);
  explicit NamedPipeServer(Handle handle);

  // A name that cannot be made gives false with no report.
  bool Open();
  // Blocks until a client is there, or another thread disconnects.
  bool WaitConnect();
  // Ends the connection and wakes the reader and the waiter. True if nothing was open.
  bool Disconnect();
  bool Close();
};

}  // namespace TESSARIN_COMMON
