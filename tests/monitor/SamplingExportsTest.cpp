#include <gmock/gmock.h>
#include <pthread.h>
#include <ravo/ravo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "Parking.h"
#include "support/Process.h"
#include "support/WaitUntil.h"

namespace {

using TESSARIN_COMMON::CurrentProcessId;
using TESSARIN_COMMON::CurrentThreadId;

constexpr double kNsPerSecond = 1e9;

struct Thread {
  std::string name;
  std::uint64_t cpuNs = 0;
};

std::map<std::uint64_t, Thread> Threads() {
  FfiList list = getThreadPerformance();
  std::map<std::uint64_t, Thread> threads;
  const auto* records = static_cast<ThreadBasicPerformance*>(list.data);
  for (std::int32_t i = 0; i < list.count; ++i) {
    EXPECT_EQ(records[i].reserved, 0u);
    threads[records[i].threadId] = {records[i].name, records[i].userTime + records[i].kernelTime};
  }
  releeaseThreadBasicPerformanceListFFI(&list);
  return threads;
}

// The processor time of the calling thread, by its own clock.
double OwnCpuNs() {
  timespec time{};
  EXPECT_EQ(clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time), 0);
  return static_cast<double>(time.tv_sec) * kNsPerSecond + static_cast<double>(time.tv_nsec);
}

TEST(SamplingExports, BurntCoreShowsInThreadProcessAndMachine) {
  const SystemCpuTime machineBefore = getSystemCpuTime();
  const ProcessPerformance processBefore = getProcessPerformance(CurrentProcessId());
  double burntNs = 0;
  // Keeps a core busy for a second of processor time, however long the machine takes to give it.
  const ParkedThread burner("", [&] {
    while ((burntNs = OwnCpuNs()) < kNsPerSecond) {
      for (volatile int i = 0; i < 100000;) i = i + 1;
    }
  });
  const ProcessPerformance process = getProcessPerformance(CurrentProcessId());
  const SystemCpuTime machine = getSystemCpuTime();
  EXPECT_GE(machine.kernel, machine.idle);
  EXPECT_EQ(machine.total, machine.kernel + machine.user);

  const auto isBurnt = testing::DoubleNear(burntNs, burntNs * 0.15);
  EXPECT_THAT(static_cast<double>(Threads()[burner.Id()].cpuNs), isBurnt);
  // Only the burner did anything in this process.
  const std::uint64_t processors = std::thread::hardware_concurrency();
  EXPECT_THAT(static_cast<double>((process.cpuTime - processBefore.cpuTime) * processors), isBurnt);
  const std::uint64_t busyTicks = (machine.total - machine.idle) - (machineBefore.total - machineBefore.idle);
  EXPECT_GE(static_cast<double>(busyTicks) * 100, burntNs * 0.85);
}

TEST(SamplingExports, WrittenMemoryShows) {
  constexpr std::size_t kBytes = 64 << 20;
  constexpr std::size_t kPageBytes = 4096;
  const std::uint64_t before = getProcessPerformance(CurrentProcessId()).memoryBytes;
  const std::unique_ptr<char[]> memory(new char[kBytes]);
  for (std::size_t i = 0; i < kBytes; i += kPageBytes) static_cast<volatile char*>(memory.get())[i] = 1;
  const std::uint64_t after = getProcessPerformance(CurrentProcessId()).memoryBytes;
  EXPECT_GE(static_cast<double>(after - before), kBytes * 0.95);
  EXPECT_LE(static_cast<double>(after - before), kBytes * 3.0);  // sanitizers add notes of their own
}

TEST(SamplingExports, OtherProcessExistsUntilItsEnd) {
  support::Process child(support::BesideTest("idle_program"), {});
  ASSERT_TRUE(child.WaitForOut("\n"));
  const std::uint64_t id = std::stoull(child.Out());
  EXPECT_TRUE(isProcessExist(id));
  EXPECT_TRUE(isProcessExist(id | std::uint64_t{1} << 32));  // the low 32 bits count
  const ProcessPerformance living = getProcessPerformance(id);
  EXPECT_EQ(living.status, 0);
  EXPECT_GT(living.memoryBytes, 0u);

  child.Kill();
  ASSERT_TRUE(child.Wait());
  // Its maker may hold it still.
  EXPECT_FALSE(isProcessExist(id));
  const ProcessPerformance ended = getProcessPerformance(id);
  EXPECT_EQ(ended.status, -1);
  EXPECT_EQ(ended.memoryBytes, 0u);
}

TEST(SamplingExports, ThreadsAreThoseThatLive) {
  const std::uint64_t endedId = ParkedThread("").Id();
  const ParkedThread living("");
  // The system may list an ended thread for a moment.
  EXPECT_TRUE(support::WaitUntil([&] { return !Threads().contains(endedId); }));
  const auto threads = Threads();
  EXPECT_TRUE(threads.contains(CurrentThreadId()));
  ASSERT_TRUE(threads.contains(living.Id()));
  EXPECT_EQ(threads.at(living.Id()).name, "thread " + std::to_string(living.Id()));
  EXPECT_FALSE(isProcessExist(living.Id()));
  EXPECT_EQ(getProcessPerformance(living.Id()).status, -1);
}

TEST(SamplingExports, TheSystemsVersionIsThreeNumbers) {
  char* const version = getOsVersionString();
  EXPECT_EQ(std::count(version, version + std::strlen(version), '.'), 2) << version;
  EXPECT_EQ(std::strspn(version, "0123456789."), std::strlen(version)) << version;
  releaseCppStringFFI(version);
}

}  // namespace
