// The system's own calls: the message window, the power status, the power requests.
#include <gmock/gmock.h>
#include <windows.h>

#include "power/PowerMonitorImpl.h"
#include "power/PowerSaveBlockerImpl.h"
#include "power/PowerSource.h"
#include "support/LogCapture.h"
#include "support/WaitUntil.h"

using namespace TESSARIN_POWER;

namespace {

constexpr const wchar_t* kClass = L"MyPowerMessageWindow";

// Other tests may run beside this one, with windows of their own.
HWND OwnWindow() {
  for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, kClass, nullptr)) != nullptr;) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) return window;
  }
  return nullptr;
}

TEST(SystemPower, TheMessageWindowHearsOfSleepFromAnyThreadUntilItIsStopped) {
  const support::LogCapture log;
  std::string heard;
  PowerMonitorImpl impl;
  EXPECT_TRUE(impl.StartPowerMonitor([&] { heard += "resume "; }, [&] { heard += "suspend "; }));
  ASSERT_TRUE(log.WaitFor("createPowerMessageWindow success")) << testing::PrintToString(log.Texts());
  const HWND window = OwnWindow();
  ASSERT_NE(window, nullptr);
  for (const WPARAM event :
       {PBT_APMSUSPEND, PBT_APMPOWERSTATUSCHANGE, PBT_APMRESUMEAUTOMATIC, PBT_APMRESUMEAUTOMATIC}) {
    EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, event, 0), TRUE);
  }
  EXPECT_EQ(heard, "suspend resume resume ");
  impl.StopPowerMonitor();
  ASSERT_TRUE(log.WaitFor("destroyPowerMessageWindow success"));
  EXPECT_EQ(OwnWindow(), nullptr);

  EXPECT_TRUE(impl.StartPowerMonitor({}, {}));  // the class is free again
  EXPECT_TRUE(support::WaitUntil([&] { return log.Count("createPowerMessageWindow success") == 2; }));
}

TEST(SystemPower, ReadsWhatTheSystemTells) {
  SYSTEM_POWER_STATUS status = {};
  ASSERT_NE(GetSystemPowerStatus(&status), FALSE);
  const auto source = MakeSystemPowerSource();
  EXPECT_EQ(source->OnMains(), status.ACLineStatus == 1);
  ASSERT_TRUE(source->BatteryPercent());
  EXPECT_TRUE(source->SaverOn().has_value());
}

// Some systems have the call and no requests behind it; then nothing may be held.
TEST(SystemPower, ARequestIsHeldOrTheLogTellsWhyNot) {
  const support::LogCapture log;
  PowerSaveBlockerImpl blocker;
  const bool held = blocker.StartPreventDisplaySleep();
  EXPECT_EQ(blocker.StartPreventDisplaySleep(), held);
  EXPECT_EQ(log.Has("preventDisplaySleepHandle is not null, already started"), held);
  const std::string failure = "PowerCreateRequest fail errorcode:" + std::to_string(ERROR_CALL_NOT_IMPLEMENTED);
  EXPECT_EQ(log.Count(failure), held ? 0 : 2);
  blocker.StopPreventDisplaySleep();
}

}  // namespace
