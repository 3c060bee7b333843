#include <fcntl.h>
#include <gtest/gtest.h>
#include <ravo/frame_slot.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "reader/FrameReader.h"
#include "slots/NamedEvent.h"
#include "slots/Shm.h"
#include "slots/SlotOwner.h"
#include "support/Process.h"

namespace {

using namespace TESSARIN_LUMARC::slots;
using Names = std::vector<std::string>;

// A program with slots, and the path of its first one.
struct SlotProcess {
  explicit SlotProcess(const char* end) : process(support::BesideTest("slot_process"), {end}) {
    EXPECT_TRUE(process.WaitForOut("\n"));
    path = process.Out().substr(0, process.Out().find('\n'));
    owner = path.substr(path.find('_') + 1, path.rfind('_') - path.find('_') - 1);
  }

  support::Process process;
  std::string path;
  std::string owner;
};

// Whatever in shared memory has the text in its name.
Names NamesWith(const std::string& text) {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator("/dev/shm")) {
    if (entry.path().filename().string().find(text) != std::string::npos) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

TEST(SlotSweep, LeavesALivingProcessAloneAndRemovesAllThatAKilledOneLeft) {
  SlotProcess slots("hold");
  SweepLeftovers();
  const auto names = NamesWith(slots.owner);
  EXPECT_EQ(names, (Names{slots.path, "ravo_owner_" + slots.owner, "sem.qx_ctl_" + slots.path + "_main",
                          "sem.qx_ctl_" + slots.path + "_side"}));
  for (const auto& name : names) {
    EXPECT_EQ(std::filesystem::status("/dev/shm/" + name).permissions(), std::filesystem::perms{0600}) << name;
  }
  slots.process.Kill();
  EXPECT_EQ(slots.process.Wait(), 128 + SIGKILL);
  SweepLeftovers();
  EXPECT_EQ(NamesWith(slots.owner), Names{});
}

TEST(SlotSweep, NeedsNoneAfterAnExitInTheMiddleOfFrames) {
  SlotProcess slots("exit");
  EXPECT_EQ(slots.process.Wait(), 0);
  EXPECT_EQ(NamesWith(slots.owner), Names{});
}

TEST(SlotSweep, TouchesOnlyNamesOfItsOwnForm) {
  const Names foreign = {"11_555000111_1", "ravo_owner_555000111x", "sem.qx_ctl_11_555000111_1_other",
                         "sem.qx_ctl_11_555000111_main"};
  for (const auto& name : foreign) std::ofstream("/dev/shm/" + name) << "x";
  SweepLeftovers();
  EXPECT_EQ(NamesWith("555000111"), foreign);
  for (const auto& name : foreign) std::filesystem::remove("/dev/shm/" + name);
}

TEST(SlotSweep, ClearsAPredecessorOfTheSameOwnerOnceAndThenNoMore) {
  static int run = 0;  // an owner is claimed for the life of the process
  const std::string owner = "98765432" + std::to_string(++run);
  const std::string old = "11_" + owner + "_1";
  const std::string ours = "11_" + owner + "_2";
  std::ofstream("/dev/shm/" + old) << "x";
  ClaimOwner(owner);
  EXPECT_EQ(NamesWith(owner), (Names{"ravo_owner_" + owner}));
  std::ofstream("/dev/shm/" + ours) << "x";
  ClaimOwner(owner);
  SweepLeftovers();
  EXPECT_EQ(NamesWith(owner), (Names{ours, "ravo_owner_" + owner}));
  std::filesystem::remove("/dev/shm/" + ours);
}

TEST(SlotSweep, NeitherFollowsALinkInPlaceOfAMarkNorWaitsForAStrangersLock) {
  if (geteuid() != 0) GTEST_SKIP() << "to make a stranger's file takes root";
  const std::string linked = "987111", foreign = "987222";
  const std::string target = std::filesystem::temp_directory_path() / "ravo_mark_target";
  std::filesystem::create_symlink(target, "/dev/shm/ravo_owner_" + linked);
  const std::string mark = "/dev/shm/ravo_owner_" + foreign;
  const int stranger = open(mark.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  ASSERT_EQ(fchown(stranger, 65534, 65534), 0);
  ASSERT_EQ(flock(stranger, LOCK_EX), 0);
  ClaimOwner(linked);
  ClaimOwner(foreign);
  SweepLeftovers();
  EXPECT_FALSE(std::filesystem::exists(target));
  EXPECT_EQ(NamesWith("ravo_owner_9871"), (Names{"ravo_owner_" + linked}));
  EXPECT_EQ(NamesWith("ravo_owner_9872"), (Names{"ravo_owner_" + foreign}));
  close(stranger);
  for (const auto& owner : {linked, foreign}) std::filesystem::remove("/dev/shm/ravo_owner_" + owner);
}

TEST(Shm, IsNotMadeOverASquattedNameNorReadFromAnotherUser) {
  const std::string name = "/dev/shm/ravo_shm_squatted";
  const std::string target = std::filesystem::temp_directory_path() / "ravo_shm_target";
  std::filesystem::create_symlink(target, name);
  EXPECT_EQ(shoom::Shm("ravo_shm_squatted", 4096).Create(true), 100);
  EXPECT_FALSE(std::filesystem::exists(target));
  std::filesystem::remove(name);
  std::ofstream(name) << std::string(4096, 'x');
  EXPECT_EQ(shoom::Shm("ravo_shm_squatted", 4096).Create(true), 100);
  EXPECT_EQ(shoom::Shm("ravo_shm_squatted", 4096).Create(false), 0);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(name.c_str(), 65534, 65534), 0);
    EXPECT_EQ(shoom::Shm("ravo_shm_squatted", 4096).Create(false), 110);
  }
  std::filesystem::remove(name);
}

// What stands under the name may be anybody's. Here a segment has the size that it was made with, and no whole page.
TEST(FrameReader, OpensNoSegmentWithoutRoomForAHeader) {
  const std::string path = "1_" + std::to_string(getpid()) + "_1";
  const NamedEvent event(RAVO_SLOT_EVENT_PREFIX + path + RAVO_SLOT_MAIN_SUFFIX);
  const auto opens = [&](std::uint32_t sizeBytes) {
    shoom::Shm segment(path, sizeBytes);
    EXPECT_EQ(segment.Create(true), shoom::Shm::kOk);
    std::string error;
    return ravo::client::FrameReader::Open(path, error) != nullptr;
  };
  EXPECT_FALSE(opens(RAVO_SLOT_HEADER_BYTES - 1));
  EXPECT_TRUE(opens(RAVO_SLOT_HEADER_BYTES));
}

}  // namespace
