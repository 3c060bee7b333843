#include "Stand.h"

namespace {

using stand::WaitFor;

constexpr std::int64_t kMicrophone = 0;
constexpr std::int64_t kSpeaker = 1;

class Devices : public stand::Started {
 protected:
  void SetUp() override {
    SimSetParams(R"({"sim.devices": [{"type": 0, "id": "m1", "name": "One"}, {"type": 0, "id": "m2", "name": "Two"},
                                     {"type": 1, "id": "s1", "name": "Loud"}]})");
  }

  static std::vector<std::string> Ids(std::int64_t type) {
    DeviceList list{};
    GetDevices(type, &list);
    std::vector<std::string> ids;
    for (int i = 0; i < list.count; ++i) ids.emplace_back(list.devices[i].deviceId);
    FreeDeviceInfoList(list.devices, list.count);
    return ids;
  }

  static std::string Current(std::int64_t type) {
    char id[1024];
    GetCurrentDeviceId(type, id);
    return id;
  }
};

TEST_F(Devices, ListsBelongToTheEngine) {
  EXPECT_EQ(Ids(kMicrophone), (std::vector<std::string>{"m1", "m2"}));
  EXPECT_EQ(Ids(99), (std::vector<std::string>{}));
  const auto before = SimViolationCount();
  DeviceList list{};
  GetDevices(kMicrophone, &list);
  FreeDeviceInfoList(list.devices + 1, list.count);
  EXPECT_EQ(SimViolationCount(), before + 1);
  FreeDeviceInfoList(list.devices, list.count - 1);
  EXPECT_EQ(SimViolationCount(), before + 2);
}

TEST_F(Devices, ChosenDeviceIsTheCurrentOne) {
  DeviceInfo info{};
  ASSERT_TRUE(GetDefaultDeviceInfo(kMicrophone, &info));
  EXPECT_STREQ(info.deviceId, "m1");
  EXPECT_FALSE(GetDefaultDeviceInfo(99, &info));
  EXPECT_EQ(SetDevice(kMicrophone, "none", false), -1);
  EXPECT_EQ(SetDevice(kMicrophone, "m2", true), 0);
  EXPECT_TRUE(WaitFor("OnDeviceSetSuccess 0 m2 1"));
  EXPECT_EQ(Current(kMicrophone), "m2");
  ASSERT_TRUE(GetCurrentDeviceInfo(kMicrophone, &info));
  EXPECT_STREQ(info.deviceName, "Two");
}

TEST_F(Devices, ChangesAreToldAndALostDeviceGivesWay) {
  SetDevice(kMicrophone, "m2", false);
  SimSetParams(R"({"sim.devices": [{"type": 0, "id": "m1", "name": "One"}, {"type": 0, "id": "m3", "name": "Three"},
                                   {"type": 1, "id": "s1", "name": "Loud"}]})");
  EXPECT_TRUE(WaitFor("OnDeviceAdded 0 [m3] [m1,m2] [m1,m3]"));
  EXPECT_TRUE(WaitFor("OnDeviceRemoved 0 [m2]"));
  EXPECT_TRUE(WaitFor("OnDeviceChange m1"));
  EXPECT_EQ(Current(kMicrophone), "m1");
}

TEST_F(Devices, PluggingAndUnpluggingMoveTheMeetingToTheDefault) {
  SimSetParams(R"({"sim.plug": [{"type": 1, "id": "s2", "name": "Headset", "isDefault": true}]})");
  EXPECT_TRUE(WaitFor("OnDeviceAdded 1 [s2] [s1] [s1,s2]"));
  EXPECT_TRUE(WaitFor("OnSystemDefaultDeviceChange 1 s1 s2"));
  EXPECT_TRUE(WaitFor("OnDeviceChange s2"));  // nobody had chosen, so the default is in use
  EXPECT_EQ(SetDevice(kSpeaker, "s1", false), 0);
  stand::Clear();
  SimSetParams(R"({"sim.unplug": ["s1", "unknown"]})");
  EXPECT_TRUE(WaitFor("OnDeviceChange s2"));
  EXPECT_EQ(Ids(kSpeaker), (std::vector<std::string>{"s2"}));
  EXPECT_EQ(Current(kSpeaker), "s2");
  SimSetParams(R"({"sim.plug": [{"type": 1, "id": "s1", "name": "Loud again"}]})");
  EXPECT_TRUE(WaitFor("OnDeviceAdded 1 [s1] [s2] [s2,s1]"));
  EXPECT_EQ(Current(kSpeaker), "s2");
}

TEST_F(Devices, LevelsAreSetFromOutsideToo) {
  SimSetParams(R"({"sim.levels": [{"type": 1, "volume": 12}, {"type": 0, "muted": true}]})");
  EXPECT_EQ(GetCurrentVolume(kSpeaker), 12);
  EXPECT_TRUE(WaitFor("OnPlaybackVolumeChange 12"));
  EXPECT_TRUE(IsCurrentRecordingDeviceMuted());
  SimSetParams(R"({"sim.levels": [{"type": 0, "muted": false}]})");
  EXPECT_FALSE(IsCurrentRecordingDeviceMuted());
}

TEST_F(Devices, VolumesAndMutesAreHeldAndTold) {
  EXPECT_EQ(SetCurrentVolume(kSpeaker, 33), 0);
  EXPECT_EQ(GetCurrentVolume(kSpeaker), 33);
  EXPECT_TRUE(WaitFor("OnPlaybackVolumeChange 33"));
  EXPECT_EQ(SetCurrentVolume(kSpeaker, 101), -1);
  EXPECT_EQ(SetCurrentRecordingMute(true), 0);
  EXPECT_TRUE(IsCurrentRecordingDeviceMuted());
  EXPECT_TRUE(WaitFor("OnRecordingMuteStateChange 1"));
  EXPECT_EQ(SetCurrentPlaybackMute(1), 0);
  EXPECT_TRUE(GetCurrentPlaybackMute());
  EXPECT_TRUE(IsCurrentPlayoutDeviceMuted());
}

TEST_F(Devices, BlackListAndRowThatFollowsTheSystemShapeTheList) {
  const char* const names[] = {"Two"};
  ServerOptionSetDeviceNameBlackList(names, 1);
  ServerOptionSetEnableSameAsSystem(true);
  ServerOptionSetDeviceSameAsSystemConfig({"SAME", "Same as {{deviceId}}", "Same"});
  EXPECT_EQ(Ids(kMicrophone), (std::vector<std::string>{"SAME", "m1"}));
  EXPECT_EQ(SetDevice(kMicrophone, "SAME", false), 0);
  DeviceInfo info{};
  ASSERT_TRUE(GetCurrentDeviceInfo(kMicrophone, &info));
  EXPECT_STREQ(info.deviceName, "Same as m1");
  ServerOptionSetEnableSameAsSystem(false);
  ServerOptionSetDeviceNameBlackList(nullptr, 0);
}

}  // namespace
