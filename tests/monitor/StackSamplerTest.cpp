#include "monitor/StackSampler.h"

#include <gmock/gmock.h>
#include <ravo/ravo.h>

#include <chrono>
#include <memory>

#include "Parking.h"
#include "monitor/ProcessDump.h"
#include "support/TempFolder.h"
#include "support/WaitUntil.h"

namespace {

using namespace std::chrono_literals;
using TESSARIN_COMMON::CurrentThreadId;
using namespace testing;
using Texts = std::vector<std::string>;

constexpr std::uint64_t kManyFrames = 100;

Texts StackOf(std::uint32_t thread, std::uint64_t maxFrames = kManyFrames, std::vector<const char*> stop = {}) {
  FfiList list = getThreadStack(thread, maxFrames, stop.data(), static_cast<std::uint32_t>(stop.size()));
  EXPECT_NE(list.data, nullptr);
  char** const texts = static_cast<char**>(list.data);
  const Texts stack(texts, texts + list.count);
  releaseStringArrayFFI(&list);
  return stack;
}

bool IsInKnownPlace(const std::string& frame) {
  return frame.find("ParkInKnownPlace") != std::string::npos;
}

// The stack once the thread has come to its place.
Texts ParkedStack(const ParkedThread& thread) {
  Texts stack;
  EXPECT_TRUE(support::WaitUntil([&] {
    stack = StackOf(thread.Id());
    return std::ranges::any_of(stack, IsInKnownPlace);
  }));
  return stack;
}

Texts theInfoLines;
void KeepInfo(const char* text) {
  theInfoLines.emplace_back(text);
}

class StackSampler : public testing::Test {
 protected:
  StackSampler() { EXPECT_TRUE(symInitializeCurrentProcess()); }
  ~StackSampler() override { symCleanupCurrentProcess(); }
};

TEST_F(StackSampler, FindsThePlaceOfAParkedThreadAndEndsAtAStopModuleAndAtTheMaximum) {
  const ParkedThread thread("parked");
  const Texts stack = ParkedStack(thread);
  const auto place = std::ranges::find_if(stack, IsInKnownPlace);
  ASSERT_NE(place, stack.end());
  EXPECT_THAT(*place, AllOf(HasSubstr("stacks_tests"), HasSubstr(PARKING_FILE), HasSubstr("---")));
  const std::string own = place->substr(0, place->find("---"));  // the module of the tests, as frames name it
  const auto above = std::ranges::find_if(stack, [&](const std::string& frame) { return frame.starts_with(own); });
  EXPECT_THAT(StackOf(thread.Id(), kManyFrames, {"other", own.c_str()}), SizeIs(above - stack.begin()));
  const std::string otherCase = "S" + own.substr(1);
  EXPECT_THAT(StackOf(thread.Id(), kManyFrames, {otherCase.c_str()}), SizeIs(stack.size()));
  EXPECT_THAT(StackOf(thread.Id(), 0), IsEmpty());
  EXPECT_THAT(StackOf(thread.Id(), 1), IsEmpty());
  EXPECT_THAT(StackOf(thread.Id(), 2), SizeIs(1));
}

TEST_F(StackSampler, GivesAnEmptyListForTheCallerAndForNobody) {
  EXPECT_THAT(StackOf(CurrentThreadId()), IsEmpty());
  std::uint32_t ended = 0;
  std::thread([&] { ended = CurrentThreadId(); }).join();
  EXPECT_THAT(StackOf(ended), IsEmpty());
}

// Sampled so often, the thread is met in the midst of the heap, whose locks it holds. Where a walk is slow, under Wine
// and the sanitizers, a minute of samples has to do.
TEST_F(StackSampler, SurvivesTenThousandSamplesOfAThreadThatAllocates) {
  constexpr int kSamples = 10000;
  std::atomic<bool> stop = false;
  std::atomic<std::uint32_t> id = 0;
  std::atomic<std::uint64_t> rounds = 0;
  std::thread allocating([&] {
    id = CurrentThreadId();
    for (std::size_t size = 1; !stop; size = size % 5000 + 7, ++rounds) {
      const auto kept = std::make_unique<Texts>(3, std::string(size, 'x'));
      ASSERT_EQ(kept->back().size(), size);
    }
  });
  while (id == 0) std::this_thread::yield();
  const auto deadline = std::chrono::steady_clock::now() + 60s;
  std::size_t frames = 0;
  int samples = 0;
  for (; samples < kSamples && std::chrono::steady_clock::now() < deadline; ++samples) frames += StackOf(id, 4).size();
  RecordProperty("samples", samples);
  const std::uint64_t after = rounds;
  while (rounds == after) std::this_thread::yield();
  stop = true;
  allocating.join();
  EXPECT_GE(samples, 100);
  EXPECT_GE(frames, static_cast<std::size_t>(samples) / 2);
}

TEST(StackList, ListsNamedThreadsWithoutStacksOnRequest) {
  const ParkedThread named("parked");
  const ParkedThread nameless("");
  for (const bool namedOnly : {false, true}) {
    FfiList list = getThreadPerformanceWithStackInfo(namedOnly, kManyFrames, nullptr, 0);
    int met = 0;
    const auto* const records = static_cast<ThreadExtendPerformance*>(list.data);
    for (std::int32_t i = 0; i < list.count; ++i) {
      const std::string name = records[i].name;
      if (records[i].threadId == CurrentThreadId()) {
        EXPECT_EQ(records[i].stackCount, 0);
      } else if (records[i].threadId == named.Id()) {
        EXPECT_EQ(name, "parked(" + std::to_string(named.Id()) + ")");
        EXPECT_EQ(records[i].stackCount == 0, namedOnly);
        ++met;
      } else if (records[i].threadId == nameless.Id()) {
        EXPECT_EQ(name, "thread " + std::to_string(nameless.Id()));
        EXPECT_GT(records[i].stackCount, 0);
        ++met;
      }
    }
    EXPECT_EQ(met, 2);
    releeaseThreadExtendPerformanceListFFI(&list);
  }
  EXPECT_FALSE(symCleanupCurrentProcess()) << "the symbols of the list are left";
}

TEST(SymbolEngine, TellsItsCosts) {
  setRustLogger(KeepInfo, nullptr, nullptr);
  EXPECT_TRUE(symInitializeCurrentProcess());
  EXPECT_TRUE(symCleanupCurrentProcess());
  EXPECT_FALSE(symCleanupCurrentProcess());
  setRustLogger(nullptr, nullptr, nullptr);
  EXPECT_THAT(theInfoLines, testing::ElementsAre(StartsWith("SymInitialize cost: "), StartsWith("SymCleanup cost: "),
                                                 StartsWith("SymCleanup cost: ")));
}

TEST(SymbolEngine, NamesAnAddress) {
  auto* volatile function = &KeepInfo;  // of a constant Wine would know the local's name at the address, too
  const auto address = reinterpret_cast<std::uintptr_t>(function);
  EXPECT_THAT(QX_MONITOR::AddressText(address),
              AllOf(HasSubstr("KeepInfo"), testing::EndsWith("(" + std::to_string(address) + ")")));
  EXPECT_EQ(QX_MONITOR::AddressText(1), "");
  symCleanupCurrentProcess();
}

TEST(ProcessDump, FailsWhereNoFileCanBeMade) {
  const support::TempFolder folder;
  EXPECT_FALSE(QX_MONITOR::WriteProcessDump(folder.Text() + "/missing/1.dmp"));
}

}  // namespace
