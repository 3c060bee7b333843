#pragma once

#include <memory>

#include "IpcEndpoint.h"
#include "NamedPipeServer.h"

namespace TESSARIN_COMMON {

// The sessions of a serving endpoint, one client after the other. All delegate calls come from its thread.
class ServerEndpoint : public IpcEndpoint {
 public:
  // Returns before any client is there, and before the pipe is open: one that cannot be made ends the thread quietly.
  bool Start();
  // Ends the session, joins the thread and closes the pipe. False if the system refuses the disconnect; the thread is
  // then not joined.
  bool Stop();

 protected:
  enum class Reports { Never, FirstSession };

  ServerEndpoint(std::unique_ptr<NamedPipeServer> pipe, const char* threadName, Reports reports);
  // What the destructors of the final classes do.
  void End();

 private:
  void RunSessions() final;
  void DropReporter();
  [[nodiscard]] NamedPipeServer& Pipe() const { return static_cast<NamedPipeServer&>(*pipe_); }

  const Reports reports_;
};

}  // namespace TESSARIN_COMMON
