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

TEST(ProfileText, ReadsWhatTheProfileCallsWouldRead) {
  struct Case {
    std::string text;
    std::string com;  ///< Key com in section port.
  };
  const std::string long300(300, 'x');
  const Case cases[] = {
      {"", "none"},
      {"[port]", "none"},
      {"com=5", "none"},  // in no section
      {"[port]\ncom=5", "5"},
      {"[PORT]\r\nCom=5\r\n", "5"},
      {"\t [ port ] rest of the line\r\n \tcom \t=  5 \t\r\n", "5"},
      {"[port\ncom=5", "none"},
      {"[port]\n[other]\ncom=5\n", "none"},
      {"[port]\n;com=5\n ; com=6\ncom\n=7\n[other]", "none"},
      {"[port]\ncom=\n", ""},
      {"[port]\ncom=a=b;c [d]\n", "a=b;c [d]"},
      {"[port]\ncom=1\ncom=2\n[port]\ncom=3\n", "1"},
      {"[port]\n[port]\ncom=3\n", "none"},  // the first section counts, even if another has the key
      {"[port]\ncom= \" a \" \n", " a "},
      {"[port]\ncom='a\"'\n", "a\""},
      {"[port]\ncom=\"\"a\"\"\n", "\"a\""},
      {"[port]\ncom=\"\n", "\""},
      {"[port]\ncom=\"a'\n", "\"a'"},
      {"[port]\ncom=''\n", ""},
      {"[port]\ncom=" + long300, std::string(255, 'x')},
      {"[port]\ncom='" + long300 + "'", std::string(255, 'x')},
      {"[port]\ncom=a\rb\r\r\n", "a\rb"},
      {"\xEF\xBB\xBF[port]\ncom=5", "5"},
      {"[po\0rt]\n\0[port]\n[port]\nx\0y=3\ncom=a\0b\n"s, "a\0b"s},
  };
  for (const Case& c : cases) EXPECT_EQ(ProfileValue(c.text, "port", "com", "none"), c.com) << c.text;
  EXPECT_EQ(ProfileValue("", "port", "com", long300).size(), 255u);
}

TEST(ProfileText, WriteChangesOneValueAndKeepsEveryOtherByte) {
  struct Case {
    std::string before;
    std::string after;  ///< Key com in section port set to 7.
  };
  const Case cases[] = {
      {"", "[port]\r\ncom=7\r\n"},
      {"\n", "\n[port]\ncom=7\n"},
      {"; mine", "; mine\r\n[port]\r\ncom=7\r\n"},
      {"[config]\na=1\n\n", "[config]\na=1\n\n[port]\ncom=7\n"},
      {"[port]", "[port]\r\ncom=7\r\n"},
      {"[port]\n\n \n[config]\n", "[port]\ncom=7\n\n \n[config]\n"},
      {"[port]\r\nflow=2\r\n; mine\r\n\r\n", "[port]\r\nflow=2\r\n; mine\r\ncom=7\r\n\r\n"},
      {"[port]\nflow=2", "[port]\nflow=2\ncom=7\n"},
      {"[port]\n[config]\ncom=1\n[port]\ncom=2\n", "[port]\ncom=7\n[config]\ncom=1\n[port]\ncom=2\n"},
      {" [ PORT ] \r\n Com =  \"1\" \r\ncom=2\r\n", " [ PORT ] \r\n Com =7\r\ncom=2\r\n"},
      {"[port]\ncom=", "[port]\ncom=7"},
      {"[port]\r\ncom= \t\r\nx", "[port]\r\ncom=7\r\nx"},
      {"[port]\ncom=1\r", "[port]\ncom=7"},
      {"junk\x01\xFF\r\r\n[port]\ncom=1\r\njunk\r", "junk\x01\xFF\r\r\n[port]\ncom=7\r\njunk\r"},
      {"\0\n[port]\ncom=\0\n\0"s, "\0\n[port]\ncom=7\n\0"s},
      {"\xEF\xBB\xBF", "\xEF\xBB\xBF\r\n[port]\r\ncom=7\r\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WithProfileValue(c.before, "port", "com", "7"), c.after) << c.before;
    EXPECT_EQ(ProfileValue(c.after, "port", "com", ""), "7") << c.after;
  }
}

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

TEST_F(ProfileFile, NeverGrowsToWhatCannotBeRead) {
  folder.Write("corvex.ini", "[port]\ncom=1\n");
  EXPECT_FALSE(WriteProfile(Path(), "port", "com", std::string(kMaxProfileFile, 'x')));
  EXPECT_EQ(Com(Path()), "1");
}

TEST_F(ProfileFile, ReadOnlyFileIsNotReplaced) {
  folder.Write("corvex.ini", "[port]\ncom=1\n");
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
