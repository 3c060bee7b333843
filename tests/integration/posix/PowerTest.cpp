// Sleep, battery, saver and inhibitors, between the system's services and the client.
#include <systemd/sd-bus.h>

#include <cstdlib>

#include "../ServerTest.h"

namespace integration {
namespace {

using testing::ElementsAre;

constexpr const char* kLogin = "org.freedesktop.login1";
constexpr const char* kLoginPath = "/org/freedesktop/login1";
constexpr const char* kLoginManager = "org.freedesktop.login1.Manager";
constexpr const char* kPower = "org.freedesktop.UPower";
constexpr const char* kProfiles = "net.hadess.PowerProfiles";

// A system bus of the test's own with stand-ins of the login manager, of the battery's keeper and of the one of power
// profiles. Processes that the test starts from now on take it for the system's.
class SystemServices {
 public:
  SystemServices() {
    const std::string address = "unix:path=" + folder_.Text() + "/bus";
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    bus_ = std::make_unique<support::Process>(
        "/usr/bin/dbus-daemon",
        std::vector<std::string>{"--session", "--nofork", "--nopidfile", "--address=" + address});
    sd_bus* connection = nullptr;
    EXPECT_TRUE(WaitUntil([&] { return sd_bus_open_system(&connection) >= 0; })) << bus_->Err();
    connection_.reset(connection);
    for (const char* service : {"logind", "upower", "power_profiles_daemon"}) {
      services_.push_back(std::make_unique<support::Process>(
          "/usr/bin/python3", std::vector<std::string>{"-m", "dbusmock", "--system", "--template", service}));
    }
    for (const char* name : {kLogin, kPower, kProfiles}) {
      EXPECT_TRUE(WaitUntil([&] { return sd_bus_get_name_creds(connection, name, 0, nullptr) >= 0; }))
          << name << ' ' << services_.front()->Err();
    }
    // A service may own its name some moments before its objects are there.
    EXPECT_TRUE(WaitUntil([this] {
      return sd_bus_call_method(connection_.get(), kLogin, kLoginPath, kLoginManager, "ListInhibitors", nullptr,
                                nullptr, "") >= 0;
    }));
  }

  void PrepareForSleep(bool sleeps) {
    EXPECT_GE(
        sd_bus_call_method(connection_.get(), kLogin, kLoginPath, "org.freedesktop.DBus.Mock", "EmitSignal", nullptr,
                           nullptr, "sssav", kLoginManager, "PrepareForSleep", "b", 1, "b", static_cast<int>(sleeps)),
        0);
  }

  void SetBattery(double percent) {
    constexpr char kPath[] = "/org/freedesktop/UPower/devices/DisplayDevice";
    Set(kPower, kPath, "org.freedesktop.UPower.Device", "Percentage", "d", percent);
    Set(kPower, kPath, "org.freedesktop.UPower.Device", "IsPresent", "b", 1);
  }
  void SetOnBattery(bool on) { Set(kPower, "/org/freedesktop/UPower", kPower, "OnBattery", "b", on ? 1 : 0); }
  void SetProfile(const char* profile) {
    Set(kProfiles, "/net/hadess/PowerProfiles", kProfiles, "ActiveProfile", "s", profile);
  }

  // Who holds what: "what who why mode".
  [[nodiscard]] std::vector<std::string> Inhibitors() {
    std::vector<std::string> held;
    sd_bus_message* reply = nullptr;
    EXPECT_GE(
        sd_bus_call_method(connection_.get(), kLogin, kLoginPath, kLoginManager, "ListInhibitors", nullptr, &reply, ""),
        0);
    if (reply != nullptr && sd_bus_message_enter_container(reply, 'a', "(ssssuu)") > 0) {
      const char *what, *who, *why, *mode;
      while (sd_bus_message_read(reply, "(ssssuu)", &what, &who, &why, &mode, nullptr, nullptr) > 0) {
        held.push_back(std::string(what) + ' ' + who + ' ' + why + ' ' + mode);
      }
    }
    sd_bus_message_unref(reply);
    return held;
  }

 private:
  template <class T>
  void Set(const char* service, const char* path, const char* interface, const char* name, const char* type, T value) {
    EXPECT_GE(sd_bus_set_property(connection_.get(), service, path, interface, name, nullptr, type, value), 0) << name;
  }

  const support::TempFolder folder_;
  std::unique_ptr<support::Process> bus_;
  std::vector<std::unique_ptr<support::Process>> services_;
  std::unique_ptr<sd_bus, decltype(&sd_bus_flush_close_unref)> connection_{nullptr, sd_bus_flush_close_unref};
};

class PowerTest : public ServerTest {
 protected:
  SystemServices services_;
};

TEST_F(PowerTest, TellsOfABatteryThatComesAndGoesDown) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  EXPECT_EQ(Call("StartPowerMonitor", "[1]"), "null");
  EXPECT_EQ(Expect("BATTERY_SAVING_MODE_CHANGE"), "[false]");  // the first poll tells of it in any case
  EXPECT_FALSE(HasCome("POWER_REMAIN_CHANGE"));
  services_.SetOnBattery(true);
  EXPECT_EQ(Expect("POWER_SOURCE_CHANGE_TO_AC"), "[false]");
  services_.SetBattery(39.6);
  EXPECT_EQ(Expect("POWER_REMAIN_CHANGE"), "[40]");
  services_.SetProfile("power-saver");
  EXPECT_EQ(Expect("BATTERY_SAVING_MODE_CHANGE"), "[true]");
  services_.SetOnBattery(false);
  EXPECT_EQ(Expect("POWER_SOURCE_CHANGE_TO_AC"), "[true]");
}

TEST_F(PowerTest, TellsOfSuspendAndResumeAsTheyComeAndEndsWellInTheirMidst) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  EXPECT_EQ(Call("StartPowerMonitor", "[3600]"), "null");
  ASSERT_TRUE(server_->WaitForLog("suspend and resume are heard from the system bus"));
  for (const bool sleeps : {false, true, true, false}) {
    services_.PrepareForSleep(sleeps);
    EXPECT_EQ(Expect(sleeps ? "SYSTEM_SUSPEND_EVENT" : "SYSTEM_RESUME_EVENT"), "[]");
    EXPECT_FALSE(HasCome(sleeps ? "SYSTEM_RESUME_EVENT" : "SYSTEM_SUSPEND_EVENT"));
  }
  for (int i = 0; i < 20; ++i) services_.PrepareForSleep(true);
}

TEST_F(PowerTest, KeepsTheDisplayAwakeOnceAndToItsEnd) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  EXPECT_EQ(Call("StartPreventDisplaySleep"), "null");
  EXPECT_EQ(Call("StartPreventDisplaySleep"), "null");
  EXPECT_THAT(services_.Inhibitors(), ElementsAre("idle Ravo MyPowerSaveBlocker block"));
  End();
  EXPECT_TRUE(WaitUntil([this] { return services_.Inhibitors().empty(); }));
}

}  // namespace
}  // namespace integration
