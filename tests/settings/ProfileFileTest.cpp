#include "settings/ProfileFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "base/TextFile.h"
#include "support/DiskRoom.h"
#include "support/FakeFiles.h"
#include "support/TempFolder.h"

namespace corvex {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using test::TempFolder;

/// A settings file in a folder of its own. WriteCom sets [port] com to 7.
class ProfileFile : public testing::Test {
 protected:
  std::string Path(const std::string& name = "corvex.ini") const { return (folder.Path() / name).string(); }
  std::string Com(const std::string& file) const {
    return ReadProfile(file, "port", "com", "none").value_or("unreadable");
  }
  bool WriteCom(const std::string& file) { return WriteProfile(files, file, "port", "com", "7"); }
  TempFolder folder;
  test::FakeFiles files;
};

TEST_F(ProfileFile, IsCreatedByTheFirstWriteAndChangedByTheNext) {
  EXPECT_EQ(Com(Path()), "none");
  EXPECT_EQ(folder.Count(), 0) << "a read creates nothing";
  EXPECT_TRUE(WriteProfile(files, Path(), "config", "lan", "yes"));
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_TRUE(WriteProfile(files, Path(), "CONFIG", "LAN", "no"));
  EXPECT_EQ(folder.Read("corvex.ini"), "[config]\r\nlan=no\r\n[port]\r\ncom=7\r\n");
  EXPECT_EQ(folder.Count(), 1) << "a temporary file is left";
}

TEST_F(ProfileFile, AnUnreadableFileIsNeverOverwritten) {
  fs::create_directory(folder.Path() / "folder");
  folder.Write("large", "[port]\ncom=1\n");
  fs::resize_file(folder.Path() / "large", kMaxProfileFile + 1);
  const std::string paths[] = {Path("folder"), Path("large"), Path("large/x"), Path("absent/corvex.ini"), "",
                               "\0x"s};
  for (const std::string& path : paths) {
    const std::string com = Com(path);
    EXPECT_TRUE(com == "unreadable" || com == "none") << path << com;
    EXPECT_FALSE(WriteCom(path)) << path;
  }
  EXPECT_TRUE(fs::is_directory(folder.Path() / "folder"));
  EXPECT_EQ(fs::file_size(folder.Path() / "large"), kMaxProfileFile + 1);
  EXPECT_EQ(folder.Count(), 2) << "a temporary file is left";
}

TEST_F(ProfileFile, IsNotReplacedByATooLongTextNorIfReadOnly) {
  folder.Write("corvex.ini", "[port]\ncom=1\n");
  EXPECT_FALSE(WriteProfile(files, Path(), "port", "com", std::string(kMaxProfileFile, 'x')));
  fs::permissions(Path(), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  EXPECT_FALSE(WriteCom(Path()));
  EXPECT_EQ(Com(Path()), "1");
  fs::permissions(Path(), fs::perms::owner_write,
                  fs::perm_options::add);  // some systems cannot remove it otherwise
}

// A file that cannot be replaced is written in place. Its second name shows that it is the same file.
TEST_F(ProfileFile, OfAnotherUserStaysTheSameFile) {
  files.othersFiles = true;
  for (const std::string text : {"[port]\ncom=1\n", "[port]\ncom=a longer value than the new one\n", ""}) {
    folder.Write("corvex.ini", text);
    fs::create_hard_link(Path(), Path("second name"));
    EXPECT_TRUE(WriteProfile(files, Path(), "port", "com", "12345"));
    EXPECT_EQ(Com(Path("second name")), "12345");
    EXPECT_EQ(folder.Read("corvex.ini").size(), text.empty() ? 19u : 17u) << "a part of the old text is left";
    EXPECT_EQ(folder.Count(), 2) << "a temporary file is left";
    fs::remove(Path("second name"));
  }
}

TEST_F(ProfileFile, IsRecoveredAfterAKill) {
  const std::string old[] = {"corvex.ini.28172391723917.tmp", "corvex.ini.0.tmp"};
  const std::string others[] = {"corvex.ini.tmp", "corvex.ini..tmp",     "corvex.ini.1x.tmp",
                                "corvex.ini.old", "my.corvex.ini.1.tmp", "corvex.ini.1.tmp.bak"};
  folder.Write("corvex.ini", "[port]\ncom=2\n");
  for (const std::string& name : old) folder.Write(name, "password");
  for (const std::string& name : others) folder.Write(name, "the user's");
  fs::create_directory(Path("corvex.ini.7.tmp"));
  FinishReplacing(Path());
  for (const std::string& name : old) EXPECT_FALSE(fs::exists(Path(name))) << name;
  for (const std::string& name : others) EXPECT_TRUE(fs::exists(Path(name))) << name;
  EXPECT_TRUE(fs::exists(Path("corvex.ini.7.tmp")));
  EXPECT_EQ(Com(Path()), "2");

  for (const bool gone : {false, true}) {
    folder.Write("corvex.ini", "[port]\ncom=3\nhalf wri");
    folder.Write("corvex.ini.safe", "[port]\ncom=4\n");
    if (gone) fs::remove(Path());
    FinishReplacing(Path());
    EXPECT_EQ(folder.Read("corvex.ini"), "[port]\ncom=4\n");
    EXPECT_FALSE(fs::exists(Path("corvex.ini.safe")));
  }
  for (const std::string& nothing : {Path("no folder/corvex.ini"), "\0x"s, ""s}) FinishReplacing(nothing);
}

TEST_F(ProfileFile, TenMegabytesAreReadAndChangedInLinearTime) {
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

TEST_F(ProfileFile, IsCreatedForItsOwnerAloneAndKeepsItsRights) {
  constexpr fs::perms owner = fs::perms::owner_read | fs::perms::owner_write;
  EXPECT_TRUE(WriteCom(Path()));
  EXPECT_EQ(fs::status(Path()).permissions(), owner);
  for (const bool othersFile : {false, true}) {
    files.othersFiles = othersFile;
    for (const fs::perms rights : {owner | fs::perms::group_read | fs::perms::group_write, fs::perms::all}) {
      fs::permissions(Path(), rights);
      EXPECT_TRUE(WriteCom(Path()));
      EXPECT_EQ(fs::status(Path()).permissions(), rights);
    }
  }
}

TEST_F(ProfileFile, ALinkIsFollowedAndKept) {
  fs::create_directory(folder.Path() / "far");
  fs::create_symlink("far/second",
                     Path());  // relative, to another link, which leads to a file that does not exist yet
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
    EXPECT_EQ(Com(Path(name)), "unreadable");
    EXPECT_FALSE(WriteCom(Path(name)));
    EXPECT_TRUE(fs::is_symlink(Path(name)));
  }
}

TEST_F(ProfileFile, AFullDiskLeavesTheOldFile) {
  for (const bool othersFile : {false, true})
    for (const long size : {20, 100'000}) {  // the smaller one fails at the close, the larger one before
      const std::string before = "[port]\ncom=1\n;" + std::string(static_cast<std::size_t>(size), 'x');
      folder.Write("corvex.ini", before);
      files.othersFiles = othersFile;
      for (const long room : {0L, 10L, size - 1}) {
        test::DiskRoom disk;
        disk.Set(room);
        const bool written = WriteCom(Path());
        disk.Set(disk.kAny);
        EXPECT_FALSE(written) << room;
        EXPECT_TRUE(folder.Read("corvex.ini") == before) << room;
        EXPECT_EQ(folder.Count(), 1) << "a temporary file is left";
      }
    }
}

#endif

}  // namespace
}  // namespace corvex
