#include <gtest/gtest.h>

#include "link/WireLog.h"
#include "print/frmSDI.h"
#include "support/Program.h"
#include "trace/frmTraceInstance.h"
#include "trace/frmTracer.h"

namespace corvex {
namespace {

TEST(SecondCopy, OfTheProgramUsesItsOwnFileNames) {
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
  EXPECT_EQ(p.folder.Count(), 5) << "these files and the settings";
}

using TraceTest = test::SessionTest;

TEST_F(TraceTest, TheNumberOfChannelWindowsIsLimited) {
  for (int i = 0; i < 100; ++i) Feed("<tml><Channel>" + std::to_string(i) + ",x</tml>");
  EXPECT_EQ(p.windows.attached.size(), 1u + 32) << "the main window and the windows of the channels";
}

}  // namespace
}  // namespace corvex
