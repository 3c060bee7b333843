#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using support::Process;
using testing::ElementsAre;
using testing::HasSubstr;

// Each test looks at what a process of its own has logged.
class Logger : public testing::Test {
 protected:
  Process Start(const std::string& action) { return Process(program_, {action, Folder()}); }
  int Run(const std::string& action) { return Start(action).Wait().value_or(-1); }
  [[nodiscard]] std::string Folder() const { return folder_.Text() + "/logs of \xC3\xA4nn"; }

  [[nodiscard]] std::vector<fs::path> Files() const {
    const std::string text = Folder();
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(fs::path(std::u8string(text.begin(), text.end())), missing)) {
      files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
  }

  // What follows the last bracket of each line's head, over all files, the logger's own lines left out.
  [[nodiscard]] std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const auto& file : Files()) {
      std::ifstream stream(file);
      for (std::string line; std::getline(stream, line);) {
        while (!line.empty() && line.back() == '\r') line.pop_back();
        const auto head = line.find("[Ravo] ");
        if (head != std::string::npos) texts.push_back(line.substr(head + 7));
      }
    }
    return texts;
  }

  const support::TempFolder folder_;
  const std::string program_ = support::BesideTest("log_child");
};

TEST_F(Logger, LinesBeforeTheLoggerAreOnStandardErrorAtOnceAndInTheFileInOrder) {
  Process child = Start("early");
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_THAT(Texts(), ElementsAre("early 1", "early 2", "later"));
  EXPECT_THAT(child.Err(), HasSubstr("early 2"));
  EXPECT_THAT(child.Err(), testing::Not(HasSubstr("later")));
}

TEST_F(Logger, WithoutALoggerOrAFolderLinesAreOnStandardError) {
  std::ofstream(folder_.Path() / "file") << "not a folder";
  Process without(program_, {"early", "none"});
  Process unusable(program_, {"early", folder_.Text() + "/file/logs"});
  for (Process* const child : {&without, &unusable}) {
    EXPECT_EQ(child->Wait(), 0);
    EXPECT_THAT(child->Err(), HasSubstr("[Ravo] later"));
  }
  EXPECT_THAT(unusable.Err(), HasSubstr("is not usable"));
}

TEST_F(Logger, ExitLosesAndTearsNoLineWhileOtherThreadsWrite) {
  EXPECT_EQ(Run("exit"), 0);
  std::vector<std::string> expected;
  for (int i = 0; i < 2000; ++i) expected.push_back("mine " + std::to_string(i));
  auto texts = Texts();
  std::erase_if(texts, [](const auto& text) { return !text.starts_with("mine"); });
  EXPECT_EQ(texts, expected);
}

TEST_F(Logger, AWarningIsInTheFileAtOnce) {
  Process child = Start("warning");
  ASSERT_TRUE(child.WaitForOut("written"));
  EXPECT_THAT(Texts(), ElementsAre("a warning"));
}

TEST_F(Logger, KeepsTheFilesOfTheLastSevenRunsAndPartsABigOne) {
  for (int run = 1; run <= 7; ++run) EXPECT_EQ(Run("early"), 0);
  EXPECT_THAT(Files(), testing::SizeIs(7));
  const auto first = Files().front();
  EXPECT_EQ(Run("big"), 0);
  EXPECT_THAT(Files(), testing::SizeIs(8));  // 40 MiB are two parts
  EXPECT_FALSE(fs::exists(first));
}

TEST_F(Logger, ATextCannotPassForTwoLinesAndMisuseIsRefused) {
  Process child = Start("misuse");
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_EQ(child.Out(), "-1-1-1-10-1");
  EXPECT_THAT(Texts(), ElementsAre("one\\nforged\\r\\x1b[2J\\x7f\tend"));
}

}  // namespace
