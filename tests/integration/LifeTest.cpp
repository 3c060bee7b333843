// How a server ends, and that nothing of it is left.
#include "ServerTest.h"

namespace integration {
namespace {

using testing::IsEmpty;

class LifeTest : public ServerTest {
 protected:
  // How often the host was told that the server stops.
  int Farewells() {
    const std::string out = server_->Host().Out();
    const std::string farewell = "the server stops";
    int count = 0;
    for (auto at = out.find(farewell); at != std::string::npos; at = out.find(farewell, at + 1)) ++count;
    return count;
  }
};

TEST_F(LifeTest, TheClientsDepartureEndsTheServerWithOneFarewell) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  tracker_.reset();
  session_.reset();
  EXPECT_EQ(server_->Host().Wait(), 0) << server_->Host().Err();
  EXPECT_EQ(Farewells(), 1);
  EXPECT_EQ(server_->Journal().back(), R"({"entry":"DestroyServer","args":[]})");
}

TEST_F(LifeTest, AnInterruptEndsTheServerWithTwoFarewells) {
  StartServer();
  ASSERT_NO_FATAL_FAILURE(Connect());
  server_->Host().Interrupt();
  EXPECT_TRUE(session_->WaitClosed(kBound));
  EXPECT_EQ(server_->Host().Wait(), 0) << server_->Host().Err();
  EXPECT_EQ(Farewells(), 2);
}

// Stops while frames come, requests are on their way and callbacks come from many threads.
TEST_F(LifeTest, EndsWellUnderLoadTimeAndAgain) {
  constexpr char kRoom[] = R"({"userId":"ann","encodings":[{"width":320,"height":180,"frameRate":200}]},)"
                           R"({"userId":"bob","streamIndex":1,"encodings":[{"frameRate":100}]})";
  for (int round = 0; round < LIFE_ROUNDS && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    ASSERT_NO_FATAL_FAILURE(JoinRoomOf(kRoom));
    Expect("STREAM_ADDED");
    Expect("STREAM_ADDED");
    Subscribe("ann_0");
    Subscribe("bob_1");
    const std::string path = NextUpdate("ann_0").slots[0].path;
    SetParams(R"("sim.fire":[{"entry":"OnVolumeChange","args":[1,true,false],"threads":4,"times":1000}])");
    for (int i = 0; i < 20; ++i) session_->CallAsync("GetInitInfo", "[]", [](const auto&) {});
    End();
    EXPECT_THAT(ServerProcess::SharedNames(path), IsEmpty());
  }
}

}  // namespace
}  // namespace integration
