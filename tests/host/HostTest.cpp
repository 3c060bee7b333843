#include <gmock/gmock.h>

#include <fstream>

#include "host/Program.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

using support::BesideTest;
using support::Process;
using testing::HasSubstr;

// The folder stands for the engine's: a file of the engine's name lies in it.
class Host : public testing::Test {
 protected:
  Host() { std::ofstream(folder_.Text() + host::kEngineFile) << "an engine"; }

  const support::TempFolder folder_;
  const std::string program_ = BesideTest("ravo-host");
  const std::string fake_ = BesideTest(FAKE_RAVO);
  const std::string options_ = R"({"ipcPath": "a \\ \"b\" *", "manuallyDylibPath": ")" + folder_.Text() + "\"}";
};

TEST_F(Host, HandsTheOptionsOnToTheLetterAndStopsAtInterrupt) {
  const std::string file = folder_.Text() + "/options.json";
  std::ofstream(file) << options_;
  Process fromFile(program_, {"--library", fake_, "@" + file});
  EXPECT_TRUE(fromFile.WaitForErr("options:" + options_ + "\n")) << fromFile.Err();

  Process host(program_, {options_, "--library", fake_});
  ASSERT_TRUE(host.WaitForErr("options:" + options_ + "\n")) << host.Err();
  host.Interrupt();
  EXPECT_EQ(host.Wait(), 0) << host.Err();
  EXPECT_THAT(host.Out(), HasSubstr("the server stops"));
}

TEST_F(Host, SaysWhyItCannotStart) {
  const std::string noEngine = R"({"manuallyDylibPath": "/nowhere"})";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{options_, "--library", "/nowhere/ravo"}, "no such library: /nowhere/ravo"},
      {{"@/nowhere/options", "--library", fake_}, "cannot read the options file /nowhere/options"},
      {{noEngine, "--library", fake_}, std::string("(option manuallyDylibPath): /nowhere") + host::kEngineFile},
      {{options_, "--library", program_}, "ravo-host: "},  // a file that is no such library
      {{"no options", "--library", fake_}, "the library refuses the options"},
      {{R"({"ipcPath": 5})"}, "parse serveroption error: type unmatch[ipcPath]"},  // the library's own line
  };
  for (const auto& [arguments, message] : cases) {
    Process host(program_, arguments);
    EXPECT_EQ(host.Wait(), 1) << message;
    EXPECT_THAT(host.Err(), HasSubstr(message));
  }
}

TEST_F(Host, ShowsItsUsage) {
  Process help(program_, {"--help"});
  EXPECT_EQ(help.Wait(), 0);
  EXPECT_THAT(help.Out(), HasSubstr("usage: ravo-host"));
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {}, {options_, "--library"}, {options_, "again"}, {options_, "--unknown"}}) {
    Process host(program_, arguments);
    EXPECT_EQ(host.Wait(), 2);
    EXPECT_THAT(host.Err(), HasSubstr("usage: ravo-host"));
  }
}

}  // namespace
