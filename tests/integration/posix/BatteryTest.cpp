// Battery, mains, saver and inhibitors, between the system's services and the client.
#include "../ServerTest.h"
#include "SystemServices.h"

namespace integration {
namespace {

using testing::ElementsAre;

class BatteryTest : public ServerTest {
 protected:
  void Start() {
    StartServer();
    ASSERT_NO_FATAL_FAILURE(Connect());
  }

  SystemServices services_;
};

TEST_F(BatteryTest, TellsOfABatteryThatComesAndGoesDown) {
  ASSERT_NO_FATAL_FAILURE(Start());
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

TEST_F(BatteryTest, TellsOfWhatHasChangedBeforeTheStart) {
  services_.SetBattery(7);
  services_.SetOnBattery(true);
  services_.SetProfile("power-saver");
  ASSERT_NO_FATAL_FAILURE(Start());
  EXPECT_EQ(Call("StartPowerMonitor", "[1]"), "null");
  EXPECT_EQ(Expect("POWER_REMAIN_CHANGE"), "[7]");
  EXPECT_EQ(Expect("POWER_SOURCE_CHANGE_TO_AC"), "[false]");
  EXPECT_FALSE(HasCome("BATTERY_SAVING_MODE_CHANGE"));
}

TEST_F(BatteryTest, KeepsTheDisplayAwakeOnceAndToItsEnd) {
  ASSERT_NO_FATAL_FAILURE(Start());
  EXPECT_EQ(Call("StartPreventDisplaySleep"), "null");
  EXPECT_EQ(Call("StartPreventDisplaySleep"), "null");
  EXPECT_THAT(services_.Inhibitors(), ElementsAre("idle Ravo MyPowerSaveBlocker block"));
  End();
  EXPECT_TRUE(WaitUntil([this] { return services_.Inhibitors().empty(); }));
}

}  // namespace
}  // namespace integration
