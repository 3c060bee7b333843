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
  // Dumps named by their age, made in an order that is neither theirs nor their names'.
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
  const std::string here = folder_.Path().filename().string() + ".log";
  ASSERT_TRUE(WriteCallStacks({"a"}, "", here));
  EXPECT_TRUE(fs::remove(here));
}

TEST_F(BlockDump, KeepsTheTwentyNewest) {
  MakeDumps(20);
  Make("other.dmp", 48h);
  fs::create_directory(folder_.Path() / "tessarin-folder");
  std::vector<std::string> removed;
  EXPECT_EQ(Prune(folder_.Text(), removed), 0u);

  MakeDumps(23);
  EXPECT_EQ(Prune(folder_.Text(), removed), 3u);
  EXPECT_THAT(removed, ElementsAre("tessarin-977.dmp", "tessarin-978.dmp", "tessarin-979.dmp"));  // oldest first
  const std::set<std::string> left = Names();
  EXPECT_EQ(left.size(), 22u);
  EXPECT_TRUE(left.contains("other.dmp"));
  for (const std::string& name : removed) EXPECT_FALSE(left.contains(name)) << name;
}

TEST_F(BlockDump, PrefixMayBeAPattern) {
  MakeDumps(21);
  std::vector<std::string> removed{"earlier"};
  EXPECT_EQ(Prune(folder_.Text(), removed, "*.log"), 1u);
  EXPECT_EQ(Prune(folder_.Text() + "/", removed, "tess*.dmp"), 2u);
  EXPECT_THAT(removed, ElementsAre("earlier", "tessarin-979.dmp"));
}

TEST_F(BlockDump, RemovesFilesAndWholeFoldersButNotBehindLinks) {
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
}

TEST_F(BlockDump, RefusesToRemoveRelativePaths) {
  const std::string name = folder_.Path().filename().string() + ".relative";
  std::ofstream(name) << "here";
  for (const std::string& path : {name, "./" + name, std::string()}) EXPECT_EQ(RemovePath(path), "Remove File Failed");
  EXPECT_TRUE(fs::remove(name));
}

}  // namespace
