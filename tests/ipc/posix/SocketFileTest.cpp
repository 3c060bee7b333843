#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <list>
#include <thread>
#include <vector>

#include "../PipeFixture.h"
#include "support/posix/SocketAddress.h"

using namespace TESSARIN_COMMON;
namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

struct SocketFile : ipc_test::PipeTest {
  ~SocketFile() override { fs::remove(name_); }
};

TEST_F(SocketFile, IsTheOwnUsersAloneAndGoesWhenAClientIsThere) {
  ASSERT_TRUE(server_.Open());
  struct stat file {};
  ASSERT_EQ(lstat(name_.c_str(), &file), 0);
  EXPECT_TRUE(S_ISSOCK(file.st_mode));
  EXPECT_EQ(file.st_mode & 0777u, 0600u);
  ASSERT_TRUE(client_.Connect(0));
  ASSERT_TRUE(server_.WaitConnect());
  EXPECT_FALSE(fs::exists(fs::symlink_status(name_)));
  server_.Close();
  ASSERT_TRUE(server_.Open());
  server_.Close();
  EXPECT_FALSE(fs::exists(fs::symlink_status(name_)));
}

void LeaveDeadSocket(const std::string& name) {
  const int dead = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(support::Bind(dead, support::SocketAddress(name)), 0);
  close(dead);
  ASSERT_TRUE(fs::exists(fs::symlink_status(name)));
}

TEST_F(SocketFile, OfADeadServerIsReplacedByOneOfManyThatStartAtOnce) {
  for (int round = 0; round < 1000; ++round) {
    LeaveDeadSocket(name_);
    std::list<NamedPipeServer> servers;
    std::atomic<int> open{0};
    std::atomic<bool> go{false};
    std::vector<std::thread> starts;
    for (int i = 0; i < 4; ++i) {
      starts.emplace_back([&, &server = servers.emplace_back(name_)] {
        while (!go) {
        }
        open += server.Open() ? 1 : 0;
      });
    }
    go = true;
    for (auto& start : starts) start.join();
    ASSERT_EQ(open, 1);
    NamedPipeClient client(name_);
    ASSERT_TRUE(client.Connect(0));  // the one that is there is the one that can be found
    client.Disconnect();
    for (auto& server : servers) server.Close();
  }
}

TEST_F(SocketFile, OfALiveServerIsLeftAloneAndItsServerHearsNothing) {
  ASSERT_TRUE(server_.Open());
  NamedPipeServer second(name_);
  EXPECT_FALSE(second.Open());
  ASSERT_TRUE(client_.Connect(0));
  ASSERT_TRUE(server_.WaitConnect());
  EXPECT_TRUE(client_.Send("x", 1));
  EXPECT_EQ(ipc_test::ReadText(server_, 1), "x");
}

TEST_F(SocketFile, ThatIsNoneOrALinkIsLeftAloneAndNotFollowed) {
  std::ofstream(name_) << "precious";
  EXPECT_FALSE(server_.Open());
  EXPECT_EQ(fs::file_size(name_), 8u);
  const std::string target = name_ + "_target";
  for (const bool dead : {false, true}) {
    fs::remove(name_);
    if (dead) LeaveDeadSocket(target);
    fs::create_symlink(target, name_);
    EXPECT_FALSE(server_.Open());
    EXPECT_EQ(fs::exists(fs::symlink_status(target)), dead);
  }
  fs::remove(target);
}

TEST_F(SocketFile, WithATooLongNameFailsAtOnce) {
  const std::string name = name_ + std::string(200, 'x');
  EXPECT_FALSE(NamedPipeServer(name).Open());
  NamedPipeClient client(name);
  client.SetErrorReporter(&clientReports_);
  EXPECT_FALSE(client.Connect(5));
  EXPECT_EQ(clientReports_.Take(), (Lines{"-1004 create file(client connect) failed.", "system"}));
}

}  // namespace
