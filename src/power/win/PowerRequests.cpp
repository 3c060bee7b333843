#include "../PowerRequests.h"

#include <windows.h>

#include "SystemVersion.h"

namespace TESSARIN_POWER {

namespace {

class SystemPowerRequests final : public PowerRequests {
 public:
  Handle Create() override {
    wchar_t reason[] = L"MyPowerSaveBlocker";
    REASON_CONTEXT context = {};
    context.Version = POWER_REQUEST_CONTEXT_VERSION;
    context.Flags = POWER_REQUEST_CONTEXT_SIMPLE_STRING;
    context.Reason.SimpleReasonString = reason;
    static_assert(kNone == -1);  // INVALID_HANDLE_VALUE
    return reinterpret_cast<Handle>(PowerCreateRequest(&context));
  }
  bool Set(Handle handle, PowerRequestType type) override {
    return PowerSetRequest(ToHandle(handle), ToType(type)) != FALSE;
  }
  bool Clear(Handle handle, PowerRequestType type) override {
    return PowerClearRequest(ToHandle(handle), ToType(type)) != FALSE;
  }
  void Close(Handle handle) override { CloseHandle(ToHandle(handle)); }
  [[nodiscard]] PowerRequestType ApplicationType() const override {
    return IsWindows8OrLater() ? PowerRequestType::ExecutionRequired : PowerRequestType::SystemRequired;
  }

 private:
  static HANDLE ToHandle(Handle handle) { return reinterpret_cast<HANDLE>(handle); }
  static POWER_REQUEST_TYPE ToType(PowerRequestType type) { return static_cast<POWER_REQUEST_TYPE>(type); }
};

}  // namespace

std::unique_ptr<PowerRequests> MakeSystemPowerRequests() {
  return std::make_unique<SystemPowerRequests>();
}

}  // namespace TESSARIN_POWER
