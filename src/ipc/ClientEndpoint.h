#pragma once

#include <cstdint>
#include <memory>

#include "IpcEndpoint.h"
#include "NamedPipeClient.h"

namespace TESSARIN_COMMON {

// The one session of a calling endpoint. OnConnected comes on the caller's thread of the start; OnDisconnect on the
// endpoint's thread when the server leaves, on the caller's in Stop.
class ClientEndpoint : public IpcEndpoint {
 public:
  // 0 without a connection, or if the system does not tell. Any thread.
  [[nodiscard]] std::uint32_t ServerProcessId() const { return Pipe().ServerProcessId(); }
  // The result is the disconnect's: false if the session had ended already.
  bool Stop();

 protected:
  ClientEndpoint(std::unique_ptr<NamedPipeClient> pipe, int mode, const char* threadName);

  [[nodiscard]] bool ConnectAndRun(std::uint32_t timeoutSeconds);
  // What the destructors of the final classes do.
  void End();
  [[nodiscard]] NamedPipeClient& Pipe() const { return static_cast<NamedPipeClient&>(*pipe_); }

 private:
  void RunSessions() final;
};

}  // namespace TESSARIN_COMMON
