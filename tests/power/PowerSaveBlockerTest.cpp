#include <gmock/gmock.h>

#include "power/PowerSaveBlockerImpl.h"
#include "support/LogCapture.h"

using namespace TESSARIN_POWER;
using testing::ElementsAre;

namespace {

class ScriptedRequests final : public PowerRequests {
 public:
  Handle Create() override {
    made.emplace_back("create");
    return creates ? next_++ : kNone;
  }
  bool Set(Handle handle, PowerRequestType type) override { return Note("set", handle, type, sets); }
  bool Clear(Handle handle, PowerRequestType type) override { return Note("clear", handle, type, clears); }
  void Close(Handle handle) override { made.push_back("close " + std::to_string(handle)); }
  [[nodiscard]] PowerRequestType ApplicationType() const override { return PowerRequestType::ExecutionRequired; }

  bool creates = true;
  bool sets = true;
  bool clears = true;
  std::vector<std::string> made;

 private:
  bool Note(const std::string& call, Handle handle, PowerRequestType type, bool result) {
    made.push_back(call + ' ' + std::to_string(handle) + ' ' + std::to_string(static_cast<int>(type)));
    return result;
  }

  Handle next_ = 0;
};

class PowerSaveBlockerTest : public testing::Test {
 protected:
  const support::LogCapture log_;
  ScriptedRequests& requests_ = *new ScriptedRequests;
  PowerSaveBlockerImpl blocker_{std::unique_ptr<PowerRequests>(&requests_)};
};

TEST_F(PowerSaveBlockerTest, HoldsEachKindOnceAndApart) {
  blocker_.StopPreventDisplaySleep();
  blocker_.StopPreventAppSuspension();
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(blocker_.StartPreventDisplaySleep());
    EXPECT_TRUE(blocker_.StartPreventAppSuspension());
  }
  EXPECT_TRUE(log_.Has("preventDisplaySleepHandle is not null, already started"));
  EXPECT_TRUE(log_.Has("preventAppSuspensionHandle is not null, already started"));
  blocker_.StopPreventDisplaySleep();
  blocker_.StopPreventAppSuspension();
  EXPECT_THAT(requests_.made,
              ElementsAre("create", "set 0 0", "create", "set 1 3", "clear 0 0", "close 0", "clear 1 3", "close 1"));
}

TEST_F(PowerSaveBlockerTest, KeepsNothingOfAFailureAndTriesAgain) {
  requests_.creates = false;
  EXPECT_FALSE(blocker_.StartPreventDisplaySleep());
  requests_.creates = true;
  requests_.sets = false;
  requests_.clears = false;
  EXPECT_FALSE(blocker_.StartPreventDisplaySleep());
  blocker_.StopPreventDisplaySleep();
  requests_.sets = true;
  EXPECT_TRUE(blocker_.StartPreventDisplaySleep());
  EXPECT_THAT(requests_.made, ElementsAre("create", "create", "set 0 0", "clear 0 0", "close 0", "create", "set 1 0"));
  for (const std::string call : {"PowerCreateRequest", "PowerSetRequest", "PowerClearRequest"}) {
    EXPECT_THAT(log_.Texts(), testing::Contains(testing::StartsWith(call + " fail errorcode:")));
  }
}

}  // namespace
