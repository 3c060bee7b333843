#include "SystemServices.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include "../ServerProcess.h"

namespace integration {
namespace {

constexpr const char* kLogin = "org.freedesktop.login1";
constexpr const char* kLoginPath = "/org/freedesktop/login1";
constexpr const char* kLoginManager = "org.freedesktop.login1.Manager";
constexpr const char* kPower = "org.freedesktop.UPower";
constexpr const char* kBatteryPath = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* kBattery = "org.freedesktop.UPower.Device";
constexpr const char* kProfiles = "net.hadess.PowerProfiles";

}  // namespace

SystemServices::SystemServices() {
  const std::string address = "unix:path=" + folder_.Text() + "/bus";
  setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
  bus_ = std::make_unique<support::Process>(
      "/usr/bin/dbus-daemon", std::vector<std::string>{"--session", "--nofork", "--nopidfile", "--address=" + address});
  EXPECT_TRUE(WaitUntil([this] { return Connect(); })) << bus_->Err();
  Serve("logind");
  Serve("upower");
  Serve("power_profiles_daemon");
  for (const char* name : {kLogin, kPower, kProfiles}) {
    EXPECT_TRUE(WaitUntil([&] { return HasOwner(name); })) << name << ' ' << services_.front()->Err();
  }
  // A service may own its name some moments before its objects are there.
  EXPECT_TRUE(WaitUntil([this] {
    return sd_bus_call_method(connection_.Get(), kLogin, kLoginPath, kLoginManager, "ListInhibitors", nullptr, nullptr,
                              "") >= 0;
  }));
}

bool SystemServices::Connect() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) return false;
  connection_.Reset(bus);
  return true;
}

void SystemServices::Serve(const std::string& templateName) {
  services_.push_back(std::make_unique<support::Process>(
      "/usr/bin/python3", std::vector<std::string>{"-m", "dbusmock", "--system", "--template", templateName}));
}

bool SystemServices::HasOwner(const char* busName) {
  return sd_bus_get_name_creds(connection_.Get(), busName, 0, nullptr) >= 0;
}

void SystemServices::PrepareForSleep(bool sleeps) {
  EXPECT_GE(
      sd_bus_call_method(connection_.Get(), kLogin, kLoginPath, "org.freedesktop.DBus.Mock", "EmitSignal", nullptr,
                         nullptr, "sssav", kLoginManager, "PrepareForSleep", "b", 1, "b", static_cast<int>(sleeps)),
      0);
}

void SystemServices::SetBattery(double percent) {
  auto* bus = connection_.Get();
  EXPECT_GE(sd_bus_set_property(bus, kPower, kBatteryPath, kBattery, "Percentage", nullptr, "d", percent), 0);
  EXPECT_GE(sd_bus_set_property(bus, kPower, kBatteryPath, kBattery, "IsPresent", nullptr, "b", 1), 0);
}

void SystemServices::SetOnBattery(bool onBattery) {
  EXPECT_GE(sd_bus_set_property(connection_.Get(), kPower, "/org/freedesktop/UPower", kPower, "OnBattery", nullptr, "b",
                                static_cast<int>(onBattery)),
            0);
}

void SystemServices::SetProfile(const char* profile) {
  EXPECT_GE(sd_bus_set_property(connection_.Get(), kProfiles, "/net/hadess/PowerProfiles", kProfiles, "ActiveProfile",
                                nullptr, "s", profile),
            0);
}

std::vector<std::string> SystemServices::Inhibitors() {
  std::vector<std::string> held;
  sd_bus_message* reply = nullptr;
  EXPECT_GE(
      sd_bus_call_method(connection_.Get(), kLogin, kLoginPath, kLoginManager, "ListInhibitors", nullptr, &reply, ""),
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

}  // namespace integration
