// Suspend and resume, from the system to the client.
#include "Machine.h"
#include "ServerTest.h"

namespace integration {
namespace {

class PowerTest : public ServerTest {
 protected:
  void StartWatching() {
    StartServer();
    ASSERT_NO_FATAL_FAILURE(Connect());
    EXPECT_EQ(Call("StartPowerMonitor", "[3600]"), "null");
    ASSERT_TRUE(server_->WaitForLog(Machine::kListens));
  }

  Machine machine_;
};

TEST_F(PowerTest, TellsOfSuspendAndResumeAsTheyCome) {
  ASSERT_NO_FATAL_FAILURE(StartWatching());
  EXPECT_EQ(Call("StartPowerMonitor", "[1]"), "null");
  std::vector<std::string> heard;
  for (const bool sleeps : {false, true, true, false}) {
    sleeps ? machine_.Suspend(*server_) : machine_.Resume(*server_);
    while (const auto event = session_->WaitEvent("", kBound)) {
      if (!event->key.starts_with("SYSTEM_")) continue;
      heard.push_back(event->key + event->content);
      break;
    }
  }
  EXPECT_THAT(heard, testing::ElementsAre("SYSTEM_RESUME_EVENT[]", "SYSTEM_SUSPEND_EVENT[]", "SYSTEM_SUSPEND_EVENT[]",
                                          "SYSTEM_RESUME_EVENT[]"));
  EXPECT_TRUE(server_->WaitForLog("Power Monitor is Running!"));
}

TEST_F(PowerTest, EndsWellInTheMidstOfChanges) {
  ASSERT_NO_FATAL_FAILURE(StartWatching());
  for (int i = 0; i < 20; ++i) machine_.Suspend(*server_);
  End();
}

// Also where the system has no such requests.
TEST_F(PowerTest, AnswersAtOnceToTheWishForAnAwakeDisplay) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_EQ(Call("StartPreventDisplaySleep"), "null");
}

}  // namespace
}  // namespace integration
