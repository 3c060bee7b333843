#include "logger/PrivateFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(PrivateFile, IsTheOwnUsersAlone) {
  const support::TempFolder folder;
  logger::MakePrivate(folder.Path() / "log");
  EXPECT_EQ(fs::status(folder.Path() / "log").permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_NO_THROW(logger::MakePrivate(folder.Path() / "log")) << "its own file may be opened again";
}

TEST(PrivateFile, IsNotMadeThroughWhatLiesThereAlready) {
  const support::TempFolder folder;
  std::ofstream(folder.Path() / "precious") << "x";
  fs::create_symlink(folder.Path() / "precious", folder.Path() / "link");
  fs::create_symlink(folder.Path() / "new", folder.Path() / "dangling");
  fs::create_hard_link(folder.Path() / "precious", folder.Path() / "twin");
  ASSERT_EQ(mkfifo((folder.Path() / "queue").c_str(), 0600), 0);
  for (const char* name : {"link", "dangling", "twin", "queue"}) {
    EXPECT_THROW(logger::MakePrivate(folder.Path() / name), std::system_error) << name;
  }
  EXPECT_FALSE(fs::exists(folder.Path() / "new"));
}

}  // namespace
