#include "print/frmSDI.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>

#include "support/FakePlatform.h"

namespace corvex {
namespace {

constexpr std::string_view kHeader = "Corvex generated file...................................\r\n";

struct PrintView : test::FakePlatform {
  std::string Saved(const std::string& file) const {
    const std::string text = folder.Read(file);
    return text.starts_with(kHeader) ? text.substr(kHeader.size()) : "none";
  }
  void Print(std::string_view text, int times) {
    while (times-- > 0) view.PrintLine(text);
  }

  Form owner{loop, windows, "owner"};
  frmSDI view{owner, platform, settings};
};

TEST(frmSDITest, ALogIsSavedWhileTheWindowIsHidden) {
  PrintView p;
  p.view.PrintLine("log\r\n");
  EXPECT_FALSE(p.view.visible);
  EXPECT_TRUE(p.view.SaveLogToFile("Blog1.txt"));
  EXPECT_EQ(p.Saved("Blog1.txt"), "log\r\n\r\n");
  EXPECT_EQ(p.view.txtNote.Text(), "");

  // A log that cannot be saved stays, and closing asks about it.
  std::filesystem::create_directory(p.folder.Path() / "Blog2.txt");
  p.view.PrintLine("more\r\n");
  EXPECT_FALSE(p.view.SaveLogToFile("Blog2.txt"));
  EXPECT_EQ(p.view.txtNote.Text(), "more\r\n");
  p.dialogs.answer = Answer::Cancel;
  // A log that is saved while the question is open leaves the text in the window.
  p.dialogs.onBox = [&] { EXPECT_TRUE(p.view.SaveLogToFile("Blog3.txt")); };
  EXPECT_FALSE(p.view.ClosePrintForm());
  EXPECT_TRUE(p.view.visible);
  EXPECT_EQ(p.view.txtNote.Text(), "more\r\n");
  EXPECT_TRUE(p.view.ClosePrintForm()) << "the text has been saved";

  // A print job that would clear the text leaves it as well.
  p.settings.printer.fileuse.SetNew();
  p.view.PrintLine("kept\r\n");
  p.dialogs.file = (p.folder.Path() / "kept.txt").string();
  p.dialogs.onBox = [&] { p.view.NewPrintJob(); };
  p.view.mnuFileSaveAs.click();
  EXPECT_EQ(p.Saved("kept.txt"), "kept\r\n\r\n");
}

TEST(frmSDITest, APrintJobDoesNotTakeTheFocus) {
  PrintView p;
  p.view.NewPrintJob();
  EXPECT_TRUE(p.view.visible);
  EXPECT_FALSE(p.view.Active()) << "the user types for the modem";
  p.view.PrintLine("x");
  p.view.windowState.Adopt(WindowState::Minimized);
  p.view.NewPrintJob();
  EXPECT_EQ(p.view.windowState, WindowState::Normal);
  EXPECT_FALSE(p.view.takesFocus);
  p.dialogs.onBox = [&] { EXPECT_TRUE(p.view.takesFocus) << "the user must answer"; };
  p.dialogs.answer = Answer::Cancel;
  EXPECT_FALSE(p.view.ClosePrintForm());
  p.view.NewPrintJob();
  EXPECT_FALSE(p.view.takesFocus);
}

TEST(frmSDITest, TheCostOfALongPrintoutIsLinear) {
  PrintView p;
  const std::clock_t begin = std::clock();
  const std::string line(122, '\n');
  p.Print(line, 40'000);  // 16 GB if each save wrote the whole text
  EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 4);
  EXPECT_EQ(p.Saved("temp.txt").size(), 39'996u * 122u + 2u);
}

TEST(frmSDITest, AFullViewSaysSo) {
  PrintView p;
  const std::string line(4000, 'x');
  p.Print(line, 2);
  p.view.txtNote.Edit(0, 0, std::string(frmSDI::kMostText - 10'000, '\n'));
  p.Print(line, 3);
  const std::string text = p.view.txtNote.Text();
  EXPECT_GT(text.size(), frmSDI::kMostText);
  EXPECT_LT(text.size(), frmSDI::kMostText + 100);
  EXPECT_NE(text.find("The view is full", text.size() - 100), std::string::npos);
  p.Print(line, 3);
  EXPECT_EQ(p.view.txtNote.Text().size(), text.size());
}

}  // namespace
}  // namespace corvex
