#include <gtest/gtest.h>
#include <ravo/ravo.h>

#include "support/Process.h"

namespace {

TEST(SamplingExports, MemoryIsWhatTheSystemsToolSays) {
  support::Process child(support::BesideTest("idle_program"), {});
  ASSERT_TRUE(child.WaitForOut("\n"));
  const std::uint64_t id = std::stoull(child.Out());
  support::Process tool("/bin/ps", {"-o", "rss=", "-p", std::to_string(id)});
  ASSERT_EQ(tool.Wait(), 0);
  const double toolBytes = std::stod(tool.Out()) * 1024;
  EXPECT_NEAR(static_cast<double>(getProcessPerformance(id).memoryBytes), toolBytes, toolBytes * 0.05);
}

}  // namespace
