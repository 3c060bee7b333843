#include "../SleepWatch.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <utility>

#include "SystemBus.h"
#include "common/Platform.h"
#include "common/posix/Descriptor.h"
#include "log/LogInstance.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_LOG::Log;

// Listens to the login manager's signal, whose one argument tells the way into sleep from the way out.
class LoginSleepWatch final : public SleepWatch {
 public:
  void Open(SleepCallbacks callbacks) override {
    callbacks_ = std::move(callbacks);
    if (bus_) {
      Log("powerNotifyHandle is not null, already started");
      return;
    }
    bus_ = OpenSystemBus();
    if (!bus_) return GiveUp(errno);
    const int result = sd_bus_match_signal(bus_.Get(), nullptr, kLogin.name, kLogin.path, kLogin.interface,
                                           "PrepareForSleep", &OnPrepareForSleep, this);
    if (result < 0) return GiveUp(-result);
    Log("suspend and resume are heard from the system bus");
  }

  void Close() override { bus_.Reset(); }
  [[nodiscard]] bool IsOpen() const override { return static_cast<bool>(bus_); }
  void Wake() override { eventfd_write(wake_.Get(), 1); }

  void Serve() override {
    int result = 0;
    do {
      result = sd_bus_process(bus_.Get(), nullptr);
    } while (result > 0);
    const int events = result < 0 ? result : sd_bus_get_events(bus_.Get());
    if (events < 0) return GiveUp(-events);
    pollfd both[] = {{sd_bus_get_fd(bus_.Get()), static_cast<short>(events), 0}, {wake_.Get(), POLLIN, 0}};
    poll(both, 2, -1);
    eventfd_t ignored = 0;
    if (both[1].revents != 0) eventfd_read(wake_.Get(), &ignored);
  }

 private:
  static int OnPrepareForSleep(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    int sleeps = 0;
    if (sd_bus_message_read(message, "b", &sleeps) < 0) return 0;
    ProcessPowerEvent(sleeps != 0 ? PowerEvent::Suspend : PowerEvent::ResumeAutomatic,
                      static_cast<const LoginSleepWatch*>(self)->callbacks_);
    return 0;
  }

  void GiveUp(int error) {
    bus_.Reset();
    Log("no word of suspend and resume from the system bus: {}", TESSARIN_COMMON::SystemErrorText(error));
  }

  BusHandle bus_;
  const TESSARIN_COMMON::Descriptor wake_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  SleepCallbacks callbacks_;
};

}  // namespace

std::unique_ptr<SleepWatch> MakeSystemSleepWatch() {
  return std::make_unique<LoginSleepWatch>();
}

}  // namespace TESSARIN_POWER
