#include <gtest/gtest.h>

#include <stdexcept>

#include "log/IntervalGate.h"
#include "log/LogInstance.h"
#include "log/RustLogger.h"
#include "log/ScopeTracer.h"
#include "support/FakeClock.h"
#include "support/LogCapture.h"

using namespace TESSARIN_LOG;

namespace {

TEST(Log, LinesCarryModuleAndLevel) {
  const support::LogCapture log;
  LogAt("TESSARIN_TASK", Level::Failure, "{} of {}, {}", 1, "two", true);
  Log("plain");
  const auto lines = log.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].module + lines[0].text, "TESSARIN_TASK1 of two, true");
  EXPECT_EQ(lines[0].level, 5);
  EXPECT_EQ(lines[1].module + lines[1].text, "Ravoplain");
  EXPECT_EQ(lines[1].level, 3);
}

TEST(ScopeTracer, AScopeThatAnExceptionEndsStillLogsItsExitAndCost) {
  const support::LogCapture log;
  support::FakeClock clock;
  try {
    const ScopeTracer tracer("A::B", "Ravo", clock);
    clock.AdvanceMs(12);
    throw std::runtime_error("out");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(log.Texts(), (std::vector<std::string>{"entry A::B", "exit A::B, cost : 12"}));
}

TEST(FunctionStatistics, PrintsAnAverageAndDoesNotDivideByZero) {
  const support::LogCapture log;
  { const FunctionStatistics none("f"); }
  {
    FunctionStatistics two("g");
    two.AddCall(10);
    two.AddCall(21);
  }
  EXPECT_EQ(log.Texts(), (std::vector<std::string>{"Function f be executed 0,cost 0us,avg 0us",
                                                   "Function g be executed 2,cost 31us,avg 15us"}));
}

TEST(IntervalGate, AnswersYesAtFirstAndThenOnceAPeriod) {
  support::FakeClock clock;
  IntervalGate gate(5000, clock);
  EXPECT_TRUE(gate.IsTime());
  clock.AdvanceMs(4999);
  EXPECT_FALSE(gate.IsTime());
  clock.AdvanceMs(1);
  EXPECT_TRUE(gate.IsTime());
  EXPECT_FALSE(gate.IsTime());
}

std::string heard;

TEST(RustLogger, DoesNothingUntilTheHostSetsItsCallbacks) {
  auto& logger = RustLogger::GetInstance();
  logger.Info("lost");
  logger.SetCallbacks([](const char* text) { heard += std::string("i:") + text; },
                      [](const char* text) { heard += std::string("w:") + text; }, nullptr);
  logger.Info("a");
  logger.Warning("b");
  logger.Error("lost");
  EXPECT_EQ(heard, "i:aw:b");
}

}  // namespace
