#include "engine/EngineApi.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "support/LogCapture.h"
#include "support/Process.h"
#include "support/TempFolder.h"

using TESSARIN_LUMARC::EngineApi;
using TESSARIN_LUMARC::EngineTable;

namespace {

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

TEST_F(EngineApiTest, AFileThatIsMissingOrNoLibraryGivesFalseALineAndAnEmptyTable) {
  const support::TempFolder folder;
  std::ofstream(folder.Path() / "text.dll") << "no library";
  for (const std::string& path : {tinyEngine + ".none", std::string(), folder.Text() + "/text.dll"}) {
    const support::LogCapture log;
    EXPECT_FALSE(api.Load(path));
    EXPECT_EQ(api.module, nullptr);
    EXPECT_EQ(CountEntries(), 0u);
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines()[0].level, 5);
  }
}

TEST_F(EngineApiTest, ThePathIsUtf8AndNamesThatTheLibraryLacksStayEmptyWithoutAWord) {
  const support::TempFolder folder;
  const auto path = folder.Path() / std::filesystem::path(u8"\u00fcml\u00e4ut.dll");
  std::filesystem::copy_file(tinyEngine, path);
  const std::u8string text = path.generic_u8string();
  const support::LogCapture log;
  ASSERT_TRUE(api.Load(std::string(text.begin(), text.end())));
  EXPECT_NE(api.module, nullptr);
  EXPECT_NE(api.VemoraUninit, nullptr) << "not called, but resolved";
  EXPECT_EQ(CountEntries(), 3u);
  EXPECT_TRUE(log.Lines().empty());
}

}  // namespace
