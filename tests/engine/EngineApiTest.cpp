#include "engine/EngineApi.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "support/LogCapture.h"
#include "support/Process.h"
#include "support/TempFolder.h"

using TESSARIN_LUMARC::EngineApi;
using TESSARIN_LUMARC::EngineTable;

namespace {

struct Frame {
  std::string uid;
  VideoFrameInfo info;
  std::vector<int> firstBytes;
  std::vector<std::int64_t> strides;
};
std::optional<Frame> frame;
std::optional<DeviceInfo> device;
bool deviceFlag = false;

void OnFrame(const char* uid, VideoFrameInfo info, const std::uint8_t* const* planes, std::int32_t planeCount,
             const std::int64_t* strides) {
  frame = Frame{uid, info, {}, {strides, strides + planeCount}};
  for (std::int32_t i = 0; i < planeCount; ++i) frame->firstBytes.push_back(planes[i][0]);
}

void OnDevice(DeviceInfo info, bool flag) {
  device = info;
  deviceFlag = flag;
}

template <auto Entry, auto Handler>
concept Registers = requires(const EngineApi& api) {
  (api.*Entry).template Register<Handler>();
};
static_assert(Registers<&EngineApi::OnVideoCommonFrame, &OnFrame>);
static_assert(!Registers<&EngineApi::OnVideoCommonFrame, &OnDevice>, "another callback's type");
static_assert(!Registers<&EngineApi::SetFps, &OnDevice>, "takes no callback");

class EngineApiTest : public testing::Test {
 protected:
  EngineApiTest() { static_cast<EngineTable&>(api) = EngineTable{}; }

  // The number of words that hold something, the module's aside.
  [[nodiscard]] std::size_t CountEntries() const {
    std::array<void*, sizeof(EngineTable) / sizeof(void*)> words;
    std::memcpy(words.data(), static_cast<const EngineTable*>(&api), sizeof(EngineTable));
    return words.size() - 1 - static_cast<std::size_t>(std::count(words.begin() + 1, words.end(), nullptr));
  }

  const std::string tinyEngine = support::BesideTest(TINY_ENGINE);
  EngineApi& api = EngineApi::GetInstance();
};

TEST_F(EngineApiTest, AMissingFileGivesFalseAndAnEmptyTable) {
  support::LogCapture log;
  EXPECT_FALSE(api.Load(tinyEngine + ".none"));
  EXPECT_EQ(api.module, nullptr);
  EXPECT_EQ(CountEntries(), 0u);
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_EQ(log.Lines()[0].level, 5);

  EXPECT_FALSE(api.Load(""));
  EXPECT_EQ(CountEntries(), 0u);
}

TEST_F(EngineApiTest, AFileThatIsNoLibraryGivesFalse) {
  const support::TempFolder folder;
  std::ofstream(folder.Path() / "text.dll") << "no library";
  EXPECT_FALSE(api.Load(folder.Text() + "/text.dll"));
  EXPECT_EQ(CountEntries(), 0u);
}

TEST_F(EngineApiTest, NamesThatTheLibraryLacksStayEmptyWithoutAWord) {
  support::LogCapture log;
  ASSERT_TRUE(api.Load(tinyEngine));
  EXPECT_NE(api.module, nullptr);
  EXPECT_TRUE(api.JoinRoom);
  EXPECT_FALSE(api.LeaveRoom);
  EXPECT_NE(api.VemoraUninit, nullptr) << "not called, but resolved";
  EXPECT_EQ(CountEntries(), 8u);
  EXPECT_TRUE(log.Lines().empty());
}

TEST_F(EngineApiTest, ThePathIsUtf8) {
  const support::TempFolder folder;
  const auto path = folder.Path() / std::filesystem::path(u8"\u00fcml\u00e4ut.dll");
  std::filesystem::copy_file(tinyEngine, path);
  const std::u8string text = path.generic_u8string();
  EXPECT_TRUE(api.Load(std::string(text.begin(), text.end())));
  EXPECT_EQ(CountEntries(), 8u);
}

TEST_F(EngineApiTest, ArgumentsAndResultsCrossUnchanged) {
  ASSERT_TRUE(api.Load(tinyEngine));
  const JoinUser user{"u", "x"};
  const JoinRoomOption option{16, 0, true, true, false};
  EXPECT_EQ(api.JoinRoom("t", "r", &user, &option), -(std::int64_t{16} << 33));

  api.ServerOptionSetActiveSpeakerConfig({0.25, 0, 0, 0, 0, 0});
  DevicePerformance performance;
  api.GetDevicePerformanceInfos(&performance);
  EXPECT_EQ(performance.memory, 0.25);
  EXPECT_STREQ(performance.deviceModel, "tiny");
}

TEST_F(EngineApiTest, CallbacksGetTheirRecordsByValue) {
  ASSERT_TRUE(api.Load(tinyEngine));
  api.OnVideoCommonFrame.Register<&OnFrame>();
  api.StartVideoCapture();
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->uid, "ann");
  EXPECT_EQ(frame->info.field_type, 1);
  EXPECT_EQ(frame->info.width, 4);
  EXPECT_EQ(frame->info.renderTimeMs, std::int64_t{1} << 40);
  EXPECT_TRUE(frame->info.flip);
  EXPECT_EQ(frame->firstBytes, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(frame->strides, (std::vector<std::int64_t>{6, 3, 3}));

  api.OnDeviceChange.Register<&OnDevice>();
  EXPECT_EQ(api.SetDevice(2, "mic", true), -7);
  ASSERT_TRUE(device);
  EXPECT_STREQ(device->deviceId, "mic");
  EXPECT_EQ(device->deviceType, 2);
  EXPECT_EQ(device->canAutoFraming, 1);
  EXPECT_TRUE(deviceFlag);
}

TEST_F(EngineApiTest, AnEntryCanBeFilledByHand) {
  static std::int64_t given = 0;
  api.SetFps = [](std::int64_t fps) { given = fps; };
  api.SetFps(30);
  EXPECT_EQ(given, 30);
}

}  // namespace
