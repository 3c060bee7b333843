#pragma once

#include <vector>

#include "Requests.h"
#include "ServerState.h"

namespace TESSARIN_LUMARC {

// Translates between the client and the engine's devices; the engine owns them and every policy about them. It has no
// state of its own. "main_thread".
class DeviceManager : public RequestManager {
 public:
  // Gives the engine its callbacks, then fills the map. The init task, once.
  void Register();

  // One group for each type of device, as the engine lists them now.
  [[nodiscard]] std::vector<DeviceGroup> Groups() const;
};

}  // namespace TESSARIN_LUMARC
