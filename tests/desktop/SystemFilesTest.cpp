#include "desktop/SystemFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "settings/ProfileFile.h"
#include "support/TempFolder.h"
#ifdef __unix__
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace corvex {
namespace {

namespace fs = std::filesystem;

struct SystemFilesTest : ::testing::Test {
  std::string Path(const std::string& name) const { return (folder.Path() / name).string(); }
  test::TempFolder folder;
  SystemFiles files;
};

TEST_F(SystemFilesTest, ReplacesAFile) {
  EXPECT_TRUE(files.MakeOwnerOnly(Path("new")));
  EXPECT_FALSE(files.MakeOwnerOnly(Path("new")));
  folder.Write("new", "new");
  EXPECT_FALSE(files.Replace(Path("old"), Path("new"))) << "there is no file to replace";
  folder.Write("old", "old");
  EXPECT_TRUE(files.Replace(Path("old"), Path("new")));
  EXPECT_EQ(folder.Read("old"), "new");
  EXPECT_EQ(folder.Count(), 1);
  EXPECT_FALSE(files.MakeOwnerOnly(Path("no folder/new")));
}

TEST_F(SystemFilesTest, EachCopyKeepsItsNumberUntilItEnds) {
  std::optional<CopyPlace> first(folder.Name());
  std::optional<CopyPlace> second(folder.Name());
  EXPECT_EQ(first->number(), 1);
  EXPECT_TRUE(first->alone());
  EXPECT_EQ(second->number(), 2);
  EXPECT_FALSE(second->alone());
  EXPECT_EQ(CopyPlace(folder.Name()).number(), 3);
  first.reset();
  first.emplace(folder.Name());
  EXPECT_EQ(first->number(), 1);
  EXPECT_FALSE(first->alone()) << "the second copy is still running";
  first.reset();
  second.reset();
  EXPECT_TRUE(CopyPlace(folder.Name()).alone());
  EXPECT_EQ(CopyPlace(Path("no folder")).number(), 1);
}

#ifdef __unix__

TEST_F(SystemFilesTest, KeepsModeOwnerAndGroup) {
  folder.Write("corvex.ini", "[port]\n");
  if (chown(Path("corvex.ini").c_str(), 1234, 5678) != 0) GTEST_SKIP() << "needs root";
  ASSERT_EQ(chmod(Path("corvex.ini").c_str(), 0664), 0);
  const auto changes = [&](bool inItsPlace) {
    struct stat before {};
    struct stat after {};
    stat(Path("corvex.ini").c_str(), &before);
    EXPECT_TRUE(WriteProfile(files, Path("corvex.ini"), "port", "com", "7"));
    stat(Path("corvex.ini").c_str(), &after);
    EXPECT_EQ(after.st_uid, 1234u);
    EXPECT_EQ(after.st_gid, 5678u);
    EXPECT_EQ(after.st_mode & 0777, 0664u);
    EXPECT_EQ(before.st_ino != after.st_ino, inItsPlace);
    EXPECT_EQ(ReadProfile(Path("corvex.ini"), "port", "com", ""), "7");
  };
  changes(true);
  fs::create_hard_link(Path("corvex.ini"), Path("second name"));
  changes(false);
  EXPECT_EQ(folder.Read("second name"), folder.Read("corvex.ini"));

  // A second user may write the file without owning it.
  chmod(folder.Name().c_str(), 0777);
  chmod(Path("corvex.ini").c_str(), 0666);
  const pid_t user = fork();
  if (user == 0) {
    const bool is = setgid(4321) == 0 && setuid(4321) == 0;
    _exit(is && WriteProfile(files, Path("corvex.ini"), "port", "com", "8") ? 0 : 1);
  }
  int status = 0;
  waitpid(user, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadProfile(Path("second name"), "port", "com", ""), "8");
  EXPECT_EQ(folder.Count(), 2);
}

TEST_F(SystemFilesTest, AKilledCopyFreesItsNumberAtOnce) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t copy = fork();
  if (copy == 0) {
    const CopyPlace place(folder.Name());
    const bool told = write(ready[1], "x", 1) == 1;
    while (told) pause();
    _exit(1);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  EXPECT_EQ(CopyPlace(folder.Name()).number(), 2);
  kill(copy, SIGKILL);
  waitpid(copy, nullptr, 0);
  EXPECT_EQ(CopyPlace(folder.Name()).number(), 1);
  close(ready[0]);
  close(ready[1]);
}

#endif

}  // namespace
}  // namespace corvex
