// What becomes of a bus that is not there or says nothing. One that answers is met by the tests of the whole server.
#include <gmock/gmock.h>

#include <cstdlib>

#include "common/posix/Descriptor.h"
#include "power/PowerMonitorImpl.h"
#include "power/PowerSaveBlockerImpl.h"
#include "power/PowerSource.h"
#include "support/LogCapture.h"
#include "support/TempFolder.h"
#include "support/posix/SocketAddress.h"

using namespace TESSARIN_POWER;

namespace {

class DeadBus : public testing::TestWithParam<bool> {
 protected:
  DeadBus() {
    const std::string path = folder_.Text() + "/bus";
    if (GetParam()) ListenInSilence(path);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
  }
  ~DeadBus() override { unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }

  const support::LogCapture log_;

 private:
  void ListenInSilence(const std::string& path) {
    socket_.Reset(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(support::Bind(socket_.Get(), support::SocketAddress(path)), 0);
    ASSERT_EQ(listen(socket_.Get(), 8), 0);
  }

  const support::TempFolder folder_;
  TESSARIN_COMMON::Descriptor socket_;
};

// With a bound of the library's own a silent bus would hold each of these calls for a minute and a half.
TEST_P(DeadBus, CostsAShortWaitAndOneLineEach) {
  const std::string reason = GetParam() ? "Connection timed out" : "No such file or directory";
  const auto begin = std::chrono::steady_clock::now();

  const auto source = MakeSystemPowerSource();
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(source->BatteryPercent());
    EXPECT_FALSE(source->OnMains());
    EXPECT_FALSE(source->SaverOn());
  }
  EXPECT_EQ(log_.Count("no power state from the system bus, the last one stands: " + reason), 1);

  PowerMonitorImpl impl;
  EXPECT_TRUE(impl.StartPowerMonitor({}, {}));
  EXPECT_TRUE(log_.WaitFor("no word of suspend and resume from the system bus: " + reason));

  PowerSaveBlockerImpl blocker;
  EXPECT_FALSE(blocker.StartPreventDisplaySleep());
  EXPECT_FALSE(blocker.StartPreventAppSuspension());
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
}

INSTANTIATE_TEST_SUITE_P(MissingOrSilent, DeadBus, testing::Bool());

}  // namespace
