#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "slots/Shm.h"
#include "slots/ShoomSlot.h"
#include "slots/SlotOwner.h"

namespace {

using namespace TESSARIN_LUMARC::slots;
using Names = std::vector<std::string>;

// A slot process that tells its path; closing its input ends one that holds.
class SlotProcess {
 public:
  explicit SlotProcess(const char* end) {
    int in[2], out[2];
    EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    std::string program = SLOT_PROCESS, argument = end;
    char* arguments[] = {program.data(), argument.data(), nullptr};
    EXPECT_EQ(posix_spawn(&id_, SLOT_PROCESS, &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    for (char c = 0; read(out[0], &c, 1) == 1 && c != '\n';) path_ += c;
    close(out[0]);
  }
  ~SlotProcess() {
    if (id_ != 0) End();
  }

  int End() {
    close(input_);
    int status = 0;
    waitpid(std::exchange(id_, 0), &status, 0);
    return status;
  }
  void Kill() {
    kill(id_, SIGKILL);
    EXPECT_TRUE(WIFSIGNALED(End()));
  }
  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] std::string Owner() const {
    const auto first = path_.find('_') + 1;
    return path_.substr(first, path_.rfind('_') - first);
  }

 private:
  pid_t id_ = 0;
  int input_ = -1;
  std::string path_;
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

TEST(SlotSweep, RemovesAllThatAKilledProcessLeft) {
  SlotProcess process("hold");
  ASSERT_EQ(NamesWith(process.Owner()),
            (Names{process.Path(), "ravo_owner_" + process.Owner(), "sem.qx_ctl_" + process.Path() + "_main",
                   "sem.qx_ctl_" + process.Path() + "_side"}));
  process.Kill();
  SweepLeftovers();
  EXPECT_EQ(NamesWith(process.Owner()), Names{});
}

TEST(SlotSweep, LeavesALivingProcessAlone) {
  SlotProcess process("hold");
  SweepLeftovers();
  const auto names = NamesWith(process.Owner());
  EXPECT_EQ(names.size(), 4u);
  for (const auto& name : names) {
    struct stat status = {};
    EXPECT_EQ(lstat(("/dev/shm/" + name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u) << name;
  }
  EXPECT_EQ(process.End(), 0);
  EXPECT_EQ(NamesWith(process.Owner()), Names{});
}

TEST(SlotSweep, NeedsNoneAfterAnExitInTheMiddleOfFrames) {
  SlotProcess process("exit");
  EXPECT_EQ(process.End(), 0);
  EXPECT_EQ(NamesWith(process.Owner()), Names{});
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

TEST(Shm, SaysSoWhenTheMemoryIsNotThere) {
  rlimit old = {};
  getrlimit(RLIMIT_FSIZE, &old);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small = {1 << 20, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(shoom::Shm("ravo_shm_full", 2 << 20).Create(true), 100);
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(NamesWith("ravo_shm_full"), Names{});
}

}  // namespace
