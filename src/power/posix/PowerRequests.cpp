#include "../PowerRequests.h"

#include <fcntl.h>

#include <cerrno>

#include "SystemBus.h"
#include "common/posix/Descriptor.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_COMMON::Descriptor;

// An inhibitor of the login manager, which is a descriptor that is held open.
struct Request {
  BusHandle bus;
  Descriptor inhibitor;
};

Descriptor Inhibit(sd_bus* bus, const char* what) {
  sd_bus_message* reply = nullptr;
  int descriptor = -1;
  int result = sd_bus_call_method(bus, kLogin.name, kLogin.path, kLogin.interface, "Inhibit", nullptr, &reply, "ssss",
                                  what, "Ravo", "MyPowerSaveBlocker", "block");
  if (result >= 0) result = sd_bus_message_read(reply, "h", &descriptor);
  Descriptor own(result >= 0 ? fcntl(descriptor, F_DUPFD_CLOEXEC, 3) : -1);  // the message closes its own
  const int error = result < 0 ? -result : errno;
  sd_bus_message_unref(reply);
  errno = error;
  return own;
}

// The display sleeps when the session idles, and an application is suspended with the whole system.
class LoginPowerRequests final : public PowerRequests {
 public:
  Handle Create() override {
    BusHandle bus = OpenSystemBus();
    if (!bus) return kNone;
    return reinterpret_cast<Handle>(new Request{std::move(bus), {}});
  }
  bool Set(Handle handle, PowerRequestType type) override {
    Request& request = At(handle);
    request.inhibitor = Inhibit(request.bus.Get(), type == PowerRequestType::DisplayRequired ? "idle" : "sleep");
    return static_cast<bool>(request.inhibitor);
  }
  bool Clear(Handle handle, PowerRequestType /*type*/) override {
    At(handle).inhibitor.Reset();
    return true;
  }
  void Close(Handle handle) override { delete &At(handle); }
  [[nodiscard]] PowerRequestType ApplicationType() const override { return PowerRequestType::ExecutionRequired; }

 private:
  static Request& At(Handle handle) { return *reinterpret_cast<Request*>(handle); }
};

}  // namespace

std::unique_ptr<PowerRequests> MakeSystemPowerRequests() {
  return std::make_unique<LoginPowerRequests>();
}

}  // namespace TESSARIN_POWER
