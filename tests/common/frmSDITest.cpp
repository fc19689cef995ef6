#include "common/frmSDI.h"

#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#ifndef _WIN32
#include <sys/resource.h>
#include <csignal>
#endif

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

TEST(frmSDITest, ALogIsSavedBehindAWindowThatNobodySees) {
  PrintView p;
  p.view.PrintLine("log\r\n");
  EXPECT_FALSE(p.view.visible);
  EXPECT_TRUE(p.view.SaveLogToFile("Blog1.txt"));
  EXPECT_EQ(p.Saved("Blog1.txt"), "log\r\n\r\n");
  EXPECT_EQ(p.view.txtNote.Text(), "");

  // What cannot be saved stays, and is asked for at the end.
  std::filesystem::create_directory(p.folder.Path() / "Blog2.txt");
  p.view.PrintLine("more\r\n");
  EXPECT_FALSE(p.view.SaveLogToFile("Blog2.txt"));
  EXPECT_EQ(p.view.txtNote.Text(), "more\r\n");
  p.dialogs.answer = Answer::Cancel;
  // A log that comes while the user is being asked is saved and takes no text away from under him.
  p.dialogs.onBox = [&] { EXPECT_TRUE(p.view.SaveLogToFile("Blog3.txt")); };
  EXPECT_FALSE(p.view.ClosePrintForm());
  EXPECT_TRUE(p.view.visible);
  EXPECT_EQ(p.view.txtNote.Text(), "more\r\n");
  EXPECT_TRUE(p.view.ClosePrintForm()) << "it is saved by now";

  // So does a job that would clear it.
  p.settings.printer.fileuse.SetNew();
  p.view.PrintLine("kept\r\n");
  p.dialogs.file = (p.folder.Path() / "kept.txt").string();
  p.dialogs.onBox = [&] { p.view.NewPrintJob(); };
  p.view.mnuFileSaveAs.click();
  EXPECT_EQ(p.Saved("kept.txt"), "kept\r\n\r\n");
}

TEST(frmSDITest, TheAutomaticSaveHoldsTheTextHoweverItHasChanged) {
  PrintView p;
  p.Print("a", 6);
  EXPECT_EQ(p.Saved("temp.txt"), "aaaaaa\r\n");
  p.Print("b", 6);
  EXPECT_EQ(p.Saved("temp.txt"), "aaaaaabbbbbb\r\n");
  p.view.txtNote.selection = TextBox::Selection{1, 0};
  p.Print("c", 6);
  EXPECT_EQ(p.Saved("temp.txt"), "accccccaaaaabbbbbb\r\n");
  p.view.txtNote.SelectAll();
  p.view.mnuEditCut.click();
  p.view.txtNote.AdoptText("typed");
  p.view.txtNote.change();
  p.Print("d", 6);
  EXPECT_EQ(p.Saved("temp.txt").size(), 11u + 2u);
  p.folder.Write("temp.txt", "somebody else's");
  p.Print("e", 6);
  EXPECT_EQ(p.Saved("temp.txt"), p.view.txtNote.Text() + "\r\n");
}

TEST(frmSDITest, ALongPrintoutCostsItsLengthAndNotItsSquare) {
  PrintView p;
  const std::clock_t begin = std::clock();
  const std::string line(122, '\n');
  p.Print(line, 40'000);  // 16 GB in all if each save wrote the whole text
  EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 4);
  EXPECT_EQ(p.Saved("temp.txt").size(), 39'996u * 122u + 2u);
}

TEST(frmSDITest, TheViewEndsWithWordsWhenItIsFull) {
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

#ifndef _WIN32
TEST(frmSDITest, AFullDiskHarmsNoFileThatIsThere) {
  PrintView p;
  p.Print("first\r\n", 6);
  const std::string saved = p.folder.Read("temp.txt");
  p.folder.Write("log.txt", "old");
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit full{.rlim_cur = saved.size(), .rlim_max = old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &full);
  p.Print(std::string(1000, 'x'), 6);
  const bool logged = p.view.SaveLogToFile("log.txt");
  const bool dirty = p.view.noteDirty();
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(logged);
  EXPECT_TRUE(dirty);
  EXPECT_EQ(p.folder.Read("log.txt"), "old");
  EXPECT_EQ(p.folder.Read("temp.txt").substr(0, saved.size() - 2), saved.substr(0, saved.size() - 2));
  p.Print("room again", 6);
  EXPECT_EQ(p.Saved("temp.txt"), p.view.txtNote.Text() + "\r\n");
}
#endif

}  // namespace
}  // namespace corvex
