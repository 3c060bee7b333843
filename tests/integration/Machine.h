#pragma once

#include <memory>

#include "ServerProcess.h"

namespace integration {

// The machine that a server runs on, as far as a test can put it to sleep. Made before the server.
class Machine {
 public:
  Machine();
  ~Machine();

  // The line of the log of a server that hears of sleep.
  static const char* const kListens;
  void Suspend(const ServerProcess& server);
  void Resume(const ServerProcess& server);

 private:
  struct System;
  const std::unique_ptr<System> system_;
};

}  // namespace integration
