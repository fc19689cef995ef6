#include <gtest/gtest.h>

#include <filesystem>

#include "link/WireLog.h"
#include "print/frmSDI.h"
#include "support/Program.h"
#include "trace/TraceLog.h"
#include "trace/frmTraceInstance.h"
#include "trace/frmTracer.h"

namespace corvex {
namespace {

namespace fs = std::filesystem;

struct TraceLogTest : ::testing::Test {
  test::TempFolder folder;
  const std::string file = (folder.Path() / "trace.log").string();
  const std::string copy = (folder.Path() / "prev.log").string();
  TraceLog log;
};

TEST_F(TraceLogTest, KeepsWhatItEmptiesUnlessThatFails) {
  for (const char* text : {"one", "two"}) {
    log.Start(file, copy);
    log.WriteLine(text);
    EXPECT_EQ(folder.Read("trace.log"), std::string(text) + "\r\n") << "while it is open";
  }
  EXPECT_EQ(folder.Read("prev.log"), "one\r\n");
  fs::remove(copy);
  fs::create_directory(copy);
  log.Start(file, copy);
  log.WriteLine("three");
  log.Stop();
  EXPECT_EQ(folder.Read("trace.log"), "two\r\nthree\r\n") << "the only copy of it";
  EXPECT_EQ(folder.Count(), 2) << "nothing lies about";
  fs::remove(file);
  log.Start((folder.Path() / "no folder" / "trace.log").string(), copy);
  log.WriteLine("lost");
  EXPECT_EQ(folder.Count(), 1);
}

TEST_F(TraceLogTest, GoesOnWhenADiskIsFull) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no disk here is always full";
  fs::create_symlink("/dev/full", file);
  log.Start(file, copy);
  for (int i = 0; i < 10; ++i) log.WriteLine("lost");
}

TEST(SecondCopy, OfTheProgramGivesItsFilesNamesOfTheirOwn) {
  test::FakePlatform p;
  SettingsStore settings(p.folder.Name(), p.files, 2);
  frmTracer master(p.platform, settings);
  frmTraceInstance channel(p.platform, settings);
  channel.NameInstance(" 3");
  master.cmdTrace[0].click();
  channel.cmdTrace[0].click();
  master.TraceText("a");
  channel.TraceText("b");
  Form owner(p.loop, p.windows, "owner");
  frmSDI view(owner, p.platform, settings);
  for (int i = 0; i < 6; ++i) view.PrintLine("2");
  settings.logging.wirelog.Set(true);
  WireLog recording(p.loop, settings);
  recording.Opened("lan");
  for (const char* name : {"trace-2.log", "trace 3-2.log", "temp-2.txt", "wire-20060331-100000-2.log"}) {
    EXPECT_NE(p.folder.Read(name), "") << name;
  }
  EXPECT_EQ(p.folder.Count(), 5) << "and the settings";
}

using TraceTest = test::SessionTest;

TEST_F(TraceTest, AModemThatCountsItsChannelsOnAndOnDoesNotFillTheScreen) {
  for (int i = 0; i < 100; ++i) Feed("<tml><Channel>" + std::to_string(i) + ",x</tml>");
  EXPECT_EQ(p.windows.attached.size(), 1u + 32) << "the main window and some channels";
}

}  // namespace
}  // namespace corvex
