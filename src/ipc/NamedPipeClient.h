#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "NamedPipe.h"

namespace TESSARIN_COMMON {

// The end that comes. Each Connect is a connection of its own.
class NamedPipeClient final : public NamedPipe {
 public:
  using Sleep = std::function<void(std::chrono::milliseconds)>;

  explicit NamedPipeClient(std::string name);
  explicit NamedPipeClient(Handle handle);

  // Tries 2t + 1 times to find the server, with a sleep of half a second after each try that fails, the last one too.
  bool Connect(std::uint32_t timeoutSeconds);
  // Of the present connection; 0 without one, or if the system does not tell.
  [[nodiscard]] std::uint32_t ServerProcessId() const;
  // Closes the connection and wakes the reader. False, with a report, if there is none.
  bool Disconnect();

  // For tests.
  void SetSleep(Sleep sleep) { sleep_ = std::move(sleep); }

 private:
  [[nodiscard]] bool OpenNamed(PipeStream& stream, std::uint32_t timeoutSeconds);

  Sleep sleep_;
};

}  // namespace TESSARIN_COMMON
