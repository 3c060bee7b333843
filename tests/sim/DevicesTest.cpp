#include "Stand.h"

namespace {

using stand::WaitFor;

constexpr std::int64_t kMicrophone = 0;

class Devices : public stand::Started {
 protected:
  void SetUp() override {
    SimSetParams(R"({"sim.devices": [{"type": 0, "id": "m1", "name": "One"}, {"type": 0, "id": "m2", "name": "Two"},
                                     {"type": 1, "id": "s1", "name": "Loud"}]})");
  }

  static std::string Current(std::int64_t type) {
    DeviceInfo info{};
    GetCurrentDeviceInfo(type, &info);
    return info.deviceName;
  }
};

TEST_F(Devices, ReportsListsThatAreGivenBackOtherThanTheyWere) {
  const auto before = SimViolationCount();
  DeviceList list{};
  GetDevices(kMicrophone, &list);
  ASSERT_EQ(list.count, 2);
  FreeDeviceInfoList(list.devices + 1, list.count);
  FreeDeviceInfoList(list.devices, list.count - 1);
  EXPECT_EQ(SimViolationCount(), before + 2);
}

TEST_F(Devices, ChangesAreToldAndALostDeviceGivesWay) {
  EXPECT_EQ(SetDevice(kMicrophone, "none", false), -1);
  EXPECT_EQ(SetDevice(kMicrophone, "m2", false), 0);
  EXPECT_EQ(Current(kMicrophone), "Two");
  SimSetParams(R"({"sim.unplug": ["m2", "unknown"]})");
  EXPECT_TRUE(WaitFor("OnDeviceChange m1"));
  EXPECT_EQ(Current(kMicrophone), "One");
  SimSetParams(R"({"sim.plug": [{"type": 1, "id": "s2", "name": "Headset", "isDefault": true}]})");
  EXPECT_TRUE(WaitFor("OnDeviceAdded 1 [s2] [s1] [s1,s2]"));
  EXPECT_TRUE(WaitFor("OnSystemDefaultDeviceChange 1 s1 s2"));
  EXPECT_TRUE(WaitFor("OnDeviceChange s2"));  // nobody had chosen, so the default is in use
}

}  // namespace
