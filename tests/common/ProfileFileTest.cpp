#include "common/ProfileFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "support/TempFolder.h"

#ifdef __unix__
#include <sys/resource.h>

#include <csignal>
#endif

namespace corvex {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::TempFolder;

/// A settings file in a folder of its own; writes set [port] com to 7.
class ProfileFile : public testing::Test {
 protected:
  std::string Path(const std::string& name = "corvex.ini") const { return (folder.Path() / name).string(); }
  std::string Com(const std::string& file) const { return ReadProfile(file, "port", "com", "none"); }
  bool WriteCom(const std::string& file) const { return WriteProfile(file, "port", "com", "7"); }
  TempFolder folder;
};

TEST_F(ProfileFile, IsMadeByTheFirstWriteAndChangedByTheNext) {
  EXPECT_EQ(Com(Path()), "none");
  EXPECT_EQ(folder.Count(), 0) << "a read makes nothing";
  EXPECT_TRUE(WriteProfile(Path(), "config", "lan", "yes"));
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_TRUE(WriteProfile(Path(), "CONFIG", "LAN", "no"));
  EXPECT_EQ(folder.Read("corvex.ini"), "[config]\r\nlan=no\r\n[port]\r\ncom=7\r\n");
  EXPECT_EQ(folder.Count(), 1) << "a temporary file is left";
}

TEST_F(ProfileFile, WhatCannotBeReadIsNeverOverwritten) {
  fs::create_directory(folder.Path() / "folder");
  folder.Write("large", "[port]\ncom=1\n");
  fs::resize_file(folder.Path() / "large", kMaxProfileFile + 1);
  const std::string paths[] = {Path("folder"), Path("large"), Path("large/x"), Path("absent/corvex.ini"), "",
                               "\0x"s};
  for (const std::string& path : paths) {
    EXPECT_EQ(Com(path), "none") << path;
    EXPECT_FALSE(WriteCom(path)) << path;
  }
  EXPECT_TRUE(fs::is_directory(folder.Path() / "folder"));
  EXPECT_EQ(fs::file_size(folder.Path() / "large"), kMaxProfileFile + 1);
  EXPECT_EQ(folder.Count(), 2) << "a temporary file is left";
}

TEST_F(ProfileFile, IsNotReplacedByWhatCannotBeReadNorIfItIsReadOnly) {
  folder.Write("corvex.ini", "[port]\ncom=1\n");
  EXPECT_FALSE(WriteProfile(Path(), "port", "com", std::string(kMaxProfileFile, 'x')));
  fs::permissions(Path(), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  EXPECT_FALSE(WriteCom(Path()));
  EXPECT_EQ(Com(Path()), "1");
  fs::permissions(Path(), fs::perms::owner_write,
                  fs::perm_options::add);  // some systems cannot remove it otherwise
}

TEST_F(ProfileFile, TenMegabytesAreReadAndChangedAtOnce) {
  std::string bytes = "[config]\n";
  while (bytes.size() < 10'000'000) bytes += "\r\r=\0[;\n\n"s;  // many short lines
  folder.Write("corvex.ini", bytes + "[port]\ncom=1\n");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Com(Path()), "1");
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << "not linear in the size";
  EXPECT_TRUE(folder.Read("corvex.ini") == bytes + "[port]\ncom=7\n");
}

#ifdef __unix__

TEST_F(ProfileFile, OnlyItsOwnerMayReadIt) {
  constexpr fs::perms owner = fs::perms::owner_read | fs::perms::owner_write;
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_EQ(fs::status(Path()).permissions(), owner);
  fs::permissions(Path(), fs::perms::all);
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_EQ(fs::status(Path()).permissions(), owner);
}

TEST_F(ProfileFile, LinkIsFollowedAndStays) {
  fs::create_directory(folder.Path() / "far");
  fs::create_symlink("far/second", Path());  // relative, to another link, to a file that is not there yet
  fs::create_symlink(folder.Path() / "far" / "real.ini", folder.Path() / "far" / "second");
  fs::create_symlink("loop", Path("loop"));
  fs::create_symlink("/dev/full", Path("device"));
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(WriteCom(Path()));
    EXPECT_EQ(Com(Path()), "7");
    EXPECT_TRUE(fs::is_symlink(Path()) && fs::is_symlink(folder.Path() / "far" / "second"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder.Path() / "far" / "real.ini")));
  }
  for (const char* name : {"loop", "device"}) {
    EXPECT_EQ(Com(Path(name)), "none");
    EXPECT_FALSE(WriteCom(Path(name)));
    EXPECT_TRUE(fs::is_symlink(Path(name)));
  }
}

TEST_F(ProfileFile, StorageThatFillsUpWhileWritingLeavesTheOldFile) {
  rlimit normal{};
  getrlimit(RLIMIT_FSIZE, &normal);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);  // the write then fails, as on a full disk
  for (const std::size_t size : {20, 100'000}) {  // one that fails at the close, and one that fails before
    const std::string before = "[port]\ncom=1\n;" + std::string(size, 'x');
    folder.Write("corvex.ini", before);
    for (const rlim_t room : {rlim_t{0}, rlim_t{10}, rlim_t{size - 1}}) {
      const rlimit full{room, normal.rlim_max};
      setrlimit(RLIMIT_FSIZE, &full);
      const bool written = WriteCom(Path());
      setrlimit(RLIMIT_FSIZE, &normal);
      EXPECT_FALSE(written) << room;
      EXPECT_TRUE(folder.Read("corvex.ini") == before) << room;
      EXPECT_EQ(folder.Count(), 1) << "a temporary file is left";
    }
  }
  std::signal(SIGXFSZ, handler);
}

#endif

}  // namespace
}  // namespace corvex
