#include <string>

#include "Stand.h"
#include "engine/ModuleLoader.h"

namespace {

using stand::Started;

constexpr const char* kCalled[] = {
#define RAVO_ENGINE_CALLED(name) #name,
#define RAVO_ENGINE_RESOLVED(name)
#include "engine/EngineSymbols.def"
};
static_assert(std::size(kCalled) == 237);

TEST(Library, ExportsEveryCalledEntryUnderItsPlainName) {
  std::string failure;
  void* const library = TESSARIN_LUMARC::LoadModule(SIM_ENGINE_FILE, failure);
  ASSERT_NE(library, nullptr) << failure;
  for (const char* name : kCalled) EXPECT_NE(TESSARIN_LUMARC::FindSymbol(library, name), nullptr) << name;
}

TEST_F(Started, ToldThatTheLibraryIsReadyAndReportedNothingInTheRightOrder) {
  EXPECT_TRUE(stand::WaitFor("OnRtcSdkInit"));
  SetFps(30);
  ServerOptionSetRTCParams("{}");  // options may come again
  EXPECT_EQ(SimViolationCount(), 0);
}

TEST_F(Started, ReportsWhatComesOutOfOrder) {
  const auto before = SimViolationCount();
  OnUserJoin(nullptr);
  VemoraInit(3, 0);
  VemoraInitRtc();
  EXPECT_EQ(SimViolationCount(), before + 3);
  stand::Register();
}

TEST(Unstarted, CallBeforeTheStartIsReported) {
  SetFps(30);
  EXPECT_EQ(SimViolationCount(), 1);
}

// What is looked at is the end of the process, which must be clean with the preview running and callbacks under way.
TEST_F(Started, ProcessMayEndWhilePicturesRun) {
  SimSetParams(R"({"sim.camera": {"encoding": {"width": 640, "height": 480, "frameRate": 500}}})");
  StartVideoCapture();
  EXPECT_TRUE(stand::WaitForFrames("", 5));
}

TEST_F(Started, NothingCallsBackAfterDestroyServer) {
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "ann", "encodings": [{"frameRate": 60}]}]}})");
  Join("me");
  Watch("ann_0", 64, 36, 60);
  ASSERT_TRUE(stand::WaitForFrames("ann", 2));
  DestroyServer();
  const auto events = stand::Events().size();
  EXPECT_FALSE(SimFire("OnUserJoin", R"(["late", 0])"));
  EXPECT_EQ(SimFireFromThreads("OnUserJoin", R"(["late", 0])", 4, 10), 0);
  SimSetParams(R"({"sim.room": {"participants": [{"userId": "late"}]}})");
  EXPECT_EQ(stand::Events().size(), events);
}

}  // namespace
