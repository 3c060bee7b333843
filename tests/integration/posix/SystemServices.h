#pragma once

#include <systemd/sd-bus.h>

#include <memory>
#include <string>
#include <vector>

#include "common/OwningHandle.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace integration {

// A system bus of the test's own with stand-ins of the login manager, of the battery's keeper and of the one of power
// profiles. Processes that the test starts from now on take it for the system's.
class SystemServices {
 public:
  SystemServices();

  void PrepareForSleep(bool sleeps);
  void SetBattery(double percent);
  void SetOnBattery(bool onBattery);
  void SetProfile(const char* profile);
  // Who holds what: "what who why mode".
  [[nodiscard]] std::vector<std::string> Inhibitors();

 private:
  struct BusTraits {
    using Type = sd_bus*;
    static constexpr Type None() { return nullptr; }
    static void Close(Type bus) { sd_bus_flush_close_unref(bus); }
  };

  [[nodiscard]] bool Connect();
  void Serve(const std::string& templateName);
  [[nodiscard]] bool HasOwner(const char* busName);

  const support::TempFolder folder_;
  std::unique_ptr<support::Process> bus_;
  std::vector<std::unique_ptr<support::Process>> services_;
  TESSARIN_COMMON::OwningHandle<BusTraits> connection_;
};

}  // namespace integration
