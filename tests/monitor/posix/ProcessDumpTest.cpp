#include "monitor/ProcessDump.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "../Parking.h"
#include "support/Process.h"
#include "support/TempFolder.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string Debug(const std::string& core) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  support::Process gdb("/usr/bin/env",
                       {"gdb", "-nx", "-batch", "-iex", "set debuginfod enabled off", "-x", RAVO_THREAD_NAMES, "-ex",
                        "info threads", "-ex", "thread apply all bt", program, core});
  EXPECT_EQ(gdb.Wait(), 0);
  return gdb.Out() + gdb.Err();
}

TEST(ProcessDump, OpensInTheDebuggerWithAllThreadsByName) {
  const support::TempFolder folder;
  const ParkedThread ann("ann");
  const ParkedThread bob("bob's thread");
  const std::string path = folder.Text() + "/server.dmp";
  ASSERT_TRUE(QX_MONITOR::WriteProcessDump(path));
  ASSERT_TRUE(QX_MONITOR::WriteProcessDump(path + ".2"));  // all threads were let go
  const std::string text = Debug(path);
  EXPECT_THAT(text, AllOf(HasSubstr("\"ann\""), HasSubstr("\"bob's thread\""), HasSubstr("WriteProcessDump")));
  const auto first = text.find("ParkInKnownPlace");
  ASSERT_NE(first, std::string::npos) << text;
  EXPECT_NE(text.find("ParkInKnownPlace", first + 1), std::string::npos);
}

}  // namespace
