#include "monitor/BlockDump.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>

#include "monitor/Files.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace QX_MONITOR;
using namespace testing;

class BlockDump : public testing::Test {
 protected:
  fs::path Make(const std::string& name, std::chrono::seconds age = 0s) const {
    const fs::path path = folder_.Path() / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << name;
    fs::last_write_time(path, fs::file_time_type::clock::now() - age);
    return path;
  }
  // Dumps named by their age in minutes, made in an order that is neither theirs nor their names'.
  void MakeDumps(int count) const {
    for (int i = 0; i < count; ++i) {
      const int age = 1 + i * 11 % count;
      Make("tessarin-" + std::to_string(1000 - age) + ".dmp", age * 60s);
    }
  }
  [[nodiscard]] std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) names.insert(entry.path().filename().string());
    return names;
  }

  const support::TempFolder folder_;
};

TEST_F(BlockDump, NamesTellTheTime) {
  const std::string before = TimeText();
  const std::string name = BlockDumpName(1, 2, 18446744073709551615u);
  EXPECT_THAT(name, AllOf(StartsWith("tessarin-2"), EndsWith("-block-1(2)-18446744073709551615.dmp")));
  const std::string time = name.substr(9, 14);
  EXPECT_LE(before, time);
  EXPECT_LE(time, TimeText());

  const std::string folder = UntimedTempFilePath("");
  EXPECT_TRUE(fs::is_directory(folder));
  EXPECT_THAT(TempFilePath("-x.log"), AllOf(StartsWith(folder + "2"), EndsWith("-x.log"), SizeIs(folder.size() + 20)));
}

TEST_F(BlockDump, ClassifiesByTheFirstModuleOfTheList) {
  EXPECT_EQ(ClassifyByModule("in TESSARIN_POWER.dll", 7), std::pair(1, 7));
  EXPECT_EQ(ModuleNumber("TESSARIN_ECHOTEST called by TESSARIN_HID"), 4);
  EXPECT_EQ(ModuleNumber("tessarin_power"), 0);
}

TEST_F(BlockDump, WritesOneCallStackALineOverWhatStoodThere) {
  const fs::path path = Make("stacks.log");
  for (const std::string& directory : {folder_.Text(), folder_.Text() + "/"}) {
    ASSERT_TRUE(WriteCallStacks({"a---b---c", "", "100%s"}, directory, "stacks.log"));
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "a---b---c\n\n100%s\n");
  }
  EXPECT_FALSE(WriteCallStacks({"a"}, folder_.Text() + "/missing", "stacks.log"));
}

TEST_F(BlockDump, KeepsTheTwentyNewestOfAPrefixOrAPattern) {
  MakeDumps(23);
  Make("other.dmp", 48h);
  fs::create_directory(folder_.Path() / "tessarin-folder");
  std::vector<std::string> removed{"earlier"};
  EXPECT_EQ(Prune(folder_.Text(), removed, "*.log"), 1u);
  EXPECT_EQ(Prune(folder_.Text(), removed), 4u);
  EXPECT_THAT(removed, ElementsAre("earlier", "tessarin-977.dmp", "tessarin-978.dmp", "tessarin-979.dmp"));
  EXPECT_EQ(Prune(folder_.Text(), removed), 4u);
  EXPECT_THAT(Names(), AllOf(SizeIs(22), Contains("other.dmp"), Not(Contains(removed.back()))));
  EXPECT_EQ(Prune(folder_.Text() + "/", removed, "*.dmp"), 5u);
  EXPECT_EQ(removed.back(), "other.dmp");
}

TEST_F(BlockDump, RemovesFilesAndWholeFoldersButNothingBehindLinksNorRelativePaths) {
  const fs::path file = Make("file");
  const fs::path kept = Make("kept/inner");
  Make("tree/a/b/file");
  std::error_code unsupported;  // the emulator makes no links
  fs::create_directory_symlink(folder_.Path() / "kept", folder_.Path() / "tree/link", unsupported);
  EXPECT_EQ(RemovePath(file.string()), "");
  EXPECT_EQ(RemovePath((folder_.Path() / "tree").string()), "");
  EXPECT_EQ(RemovePath(file.string()), "");  // gone already
  EXPECT_THAT(Names(), ElementsAre("kept"));
  EXPECT_TRUE(fs::exists(kept));

  const std::string name = folder_.Path().filename().string() + ".relative";
  std::ofstream(name) << "here";
  for (const std::string& path : {name, "./" + name, std::string()}) EXPECT_EQ(RemovePath(path), "Remove File Failed");
  EXPECT_TRUE(fs::remove(name));
}

}  // namespace
