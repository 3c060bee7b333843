#include "manager/SubscriptionScheduler.h"

#include <gtest/gtest.h>

#include "common/JsonWriter.h"

using namespace TESSARIN_LUMARC;

namespace {

using Calls = std::vector<std::string>;

class SubscriptionSchedulerTest : public testing::Test, private ISubscribeOutput {
 protected:
  SubscriptionSchedulerTest() : scheduler_(*this) { scheduler_.SetStreamResolutions("s", kEncodings); }

  bool StatusHas(const std::string& text) {
    return TESSARIN_COMMON::JsonText(scheduler_.GetStatus()).find(text) != std::string::npos;
  }
  Calls TakeCalls() { return std::exchange(calls_, {}); }
  void Answer(std::int64_t state, bool video, std::uint64_t index = 0) {
    scheduler_.OnStreamSubscribedTask(state, "s", video, true, index, 0);
  }

  const std::vector<slots::StreamResolution> kEncodings{
      {320, 180, 0, 15, 0, 0}, {180, 320, 0, 20, 0, 0}, {1280, 720, 0, 30, 0, 0}};
  SubscriptionScheduler scheduler_;
  std::string self_;

 private:
  void Subscribe(const std::string& sid, bool video, std::int32_t frameRate, std::int32_t width,
                 std::int32_t height) override {
    calls_.push_back("Subscribe " + sid + (video ? " av " : " a ") + std::to_string(frameRate) + " " +
                     std::to_string(width) + "x" + std::to_string(height));
  }
  void UnsubscribeVideo(const std::string& sid) override { calls_.push_back("Unsubscribe " + sid); }
  void SubStarted(const std::string& sid, bool video, std::uint64_t index) override {
    calls_.push_back("Started " + sid + (video ? " av " : " a ") + std::to_string(index));
  }
  bool IsSelfStream(const std::string& sid) override { return sid == self_; }

  Calls calls_;
};

TEST_F(SubscriptionSchedulerTest, AWishIsAskedForOnceAndTheLastViewThatLeavesTakesTheVideoAway) {
  scheduler_.subscribe_video("s", 0, "a", 0);
  EXPECT_EQ(TakeCalls(), (Calls{"Started s av 0", "Subscribe s av 15 320x180"}));
  scheduler_.subscribe_video("s", 2, "b", 1);
  Answer(0, true);
  EXPECT_TRUE(TakeCalls().empty());
  EXPECT_TRUE(StatusHas(R"("audioSubscribing":["s"],"subscribedInfo":[{"sid":"s","index":0,"layer":0}]})"));
  scheduler_.subscribe_audio_only("s", "a");
  EXPECT_TRUE(TakeCalls().empty());  // covered: it never shrinks while a view remains
  scheduler_.subscribe_audio_only("s", "b");
  EXPECT_EQ(TakeCalls(), (Calls{"Started s a 0", "Unsubscribe s", "Subscribe s a 15 320x180"}));
  EXPECT_TRUE(StatusHas(R"("subscribed":["s"])"));  // until the engine has answered
  Answer(0, false);
  EXPECT_TRUE(StatusHas(R"("subscribing":[],"unSubscribing":[],"subscribed":[])"));
  scheduler_.subscribe_audio_only("s", "never wished");
  EXPECT_EQ(TakeCalls().size(), 3u);
}

TEST_F(SubscriptionSchedulerTest, AfterTheVideoWasTakenAwayTheLargestPictureWinsAndTheFirstOfTwoEqualOnes) {
  const std::pair<std::vector<std::uint64_t>, const char*> cases[] = {{{0, 2}, "Subscribe s av 30 1280x720"},
                                                                      {{2, 0}, "Subscribe s av 30 1280x720"},
                                                                      {{0, 1}, "Subscribe s av 15 320x180"},
                                                                      {{1, 0}, "Subscribe s av 20 180x320"},
                                                                      {{9, 0}, "Subscribe s av 15 320x180"}};
  for (const auto& [wishes, asked] : cases) {
    scheduler_.RemoveStreamAll("s");
    for (const std::uint64_t index : wishes) {
      scheduler_.subscribe_video("s", index, std::to_string(index), 0);  // kept: no encodings yet
    }
    scheduler_.SetStreamResolutions("s", kEncodings);
    TakeCalls();
    scheduler_.subscribe_audio_only("s", "a view that is not there");
    ASSERT_EQ(TakeCalls().back(), asked);
  }
}

TEST_F(SubscriptionSchedulerTest, AWishThatOvertakesItsStreamIsKeptAndAsksForNothing) {
  scheduler_.subscribe_video("late", 0, "a", 0);
  EXPECT_TRUE(TakeCalls().empty());
  scheduler_.SetStreamResolutions("late", {{640, 360, 0, 30, 0, 0}});
  EXPECT_TRUE(TakeCalls().empty());
  scheduler_.subscribe_video("late", 0, "b", 0);
  EXPECT_EQ(TakeCalls().back(), "Subscribe late av 30 640x360");
}

TEST_F(SubscriptionSchedulerTest, AFailedAnswerHoldsOffEveryRetryUntilTheStreamIsRemoved) {
  scheduler_.subscribe_video("s", 0, "a", 0);
  Answer(-1, true);
  TakeCalls();
  scheduler_.subscribe_video("s", 0, "a", 0);
  EXPECT_TRUE(TakeCalls().empty());
  EXPECT_TRUE(StatusHas(R"("subscribing":["s"])"));
  scheduler_.RemoveStreamAll("s");
  scheduler_.subscribe_audio_only("s", "a");
  EXPECT_TRUE(TakeCalls().empty());
  EXPECT_TRUE(StatusHas(R"("subscribing":[],"unSubscribing":[],"subscribed":[],"waitingSubscribe":[],)"
                        R"("audioSubscribing":[])"));
}

TEST_F(SubscriptionSchedulerTest, AnAnswerAfterTheRemovalStaysUntilTheNextRemoval) {
  scheduler_.subscribe_video("s", 0, "a", 0);
  scheduler_.RemoveStreamAll("s");
  Answer(0, true);
  EXPECT_TRUE(StatusHas(R"("subscribed":["s"])"));
  scheduler_.RemoveStreamAll("s");
  EXPECT_TRUE(StatusHas(R"("subscribed":[])"));
}

TEST_F(SubscriptionSchedulerTest, TheOwnStreamIsNeverSubscribed) {
  self_ = "s";
  scheduler_.subscribe_video("s", 0, "a", 0);
  EXPECT_TRUE(TakeCalls().empty());
}

}  // namespace
