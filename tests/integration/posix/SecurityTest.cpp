// What another user of the machine gets of a server, and what a client tells another user's server.
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "../RawLink.h"
#include "../ServerTest.h"
#include "support/posix/SocketAddress.h"

namespace integration {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

// A child that runs as the user "nobody". The action makes system calls and nothing else: the parent has threads.
template <class Action>
pid_t StartAsNobody(Action action) {
  const pid_t child = fork();
  if (child != 0) return child;
  if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(255);
  _exit(action());
}

// What the action returns, an error of the system or 0.
template <class Action>
int AsNobody(Action action) {
  int status = 0;
  waitpid(StartAsNobody(action), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int OpenAsNobody(const std::string& path) {
  return AsNobody([&] { return open(path.c_str(), O_RDONLY) >= 0 ? 0 : errno; });
}

// Connects and reads: what the system said, or 0 where the peer has closed without a byte.
int ConnectAsNobody(const std::string& path) {
  const sockaddr_un address = support::SocketAddress(path);
  return AsNobody([&] {
    const int link = socket(AF_UNIX, SOCK_STREAM, 0);
    if (support::Connect(link, address) != 0) return errno;
    char byte = 0;
    return read(link, &byte, 1) == 0 || errno == ECONNRESET ? 0 : EBADMSG;
  });
}

class SecurityTest : public ServerTest {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "to become another user takes root";
  }
};

TEST_F(SecurityTest, AnotherUserNeitherConnectsNorReadsFramesNorTheLog) {
  ASSERT_NO_FATAL_FAILURE(StartServer(R"("sim.room":{"participants":[{"userId":"ann"}]})"));
  EXPECT_EQ(ConnectAsNobody(server_->Pipe()), EACCES);

  ASSERT_NO_FATAL_FAILURE(Connect());
  EXPECT_EQ(Call("JoinMeeting", R"(["token","room","me",""])"), "0");
  Expect("STREAM_ADDED");
  Subscribe("ann_0");
  std::vector<std::string> names;
  for (const auto& name : ServerProcess::SharedNames(NextUpdate("ann_0").slots[0].path)) {
    names.push_back("/dev/shm/" + name.substr(0, name.size() - 1));
  }
  EXPECT_GE(names.size(), 4u);
  for (const auto& file : fs::directory_iterator(server_->Folder())) {
    if (file.path().extension() == ".log") names.push_back(file.path());
  }
  for (const auto& name : names) EXPECT_EQ(OpenAsNobody(name), EACCES) << name;
}

TEST_F(SecurityTest, AnotherUserWhomTheFileLetsInIsDroppedAndTheOwnOneServed) {
  ASSERT_NO_FATAL_FAILURE(StartServer());
  ASSERT_EQ(chmod(server_->Pipe().c_str(), 0666), 0);
  EXPECT_EQ(ConnectAsNobody(server_->Pipe()), 0);
  Connect();
}

TEST_F(SecurityTest, AClientTellsNothingToAnotherUsersServer) {
  const support::TempFolder folder;
  fs::permissions(folder.Path(), fs::perms::all);
  const std::string path = folder.Text() + "/link";
  const sockaddr_un address = support::SocketAddress(path);
  const pid_t impostor = StartAsNobody([&] {
    umask(0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    if (support::Bind(listener, address) != 0 || listen(listener, 5) != 0) return errno;
    for (;;) pause();
  });
  EXPECT_TRUE(WaitUntil([&] { return fs::exists(path); }));
  EXPECT_FALSE(RawLink(path).Connected());
  kill(impostor, SIGKILL);
  waitpid(impostor, nullptr, 0);
}

TEST_F(SecurityTest, ALineFeedInARequestForgesNoLineOfTheLog) {
  ASSERT_NO_FATAL_FAILURE(Begin());
  EXPECT_FALSE(session_->Call("X\nforged", "[]", kBound).Ok());
  EXPECT_TRUE(server_->WaitForLog("not handle this func:X\\nforged"));
  for (const auto& line : server_->LogLines("forged")) EXPECT_FALSE(line.starts_with("forged")) << line;
}

}  // namespace
}  // namespace integration
