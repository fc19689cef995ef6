// Bad replies of the terminal, bad configuration files and a full disk, in the whole program: each has an
// outcome that the user sees, and no file of the user is lost or left half written.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "devices/ConfigFile.h"
#include "devices/frmDev.h"
#include "support/DiskRoom.h"
#include "support/Program.h"

namespace corvex {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Texts = std::vector<std::string>;

std::string Times(std::size_t count, std::string_view text) {
  std::string all;
  all.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) all += text;
  return all;
}

std::string Numbered(int first, int last, std::string_view before, std::string_view after) {
  std::string all;
  for (int i = first; i <= last; ++i) all.append(before).append(std::to_string(i)).append(after);
  return all;
}

struct BadInputTest : ::testing::Test, test::Session {
  BadInputTest() {
    for (const auto& [command, reply] : test::ConfiguredUnit()) modem.Answer(command, reply);
    p.dialogs.answer = Answer::Ok;
  }

  /// Opens the device manager, and runs `use` in it after the first read.
  void Visit(const std::function<void(frmDev&)>& use) {
    bool used = false;
    p.loop.After(std::chrono::seconds(20), [&] {
      auto* const window = p.windows.Shown<frmDev>();
      ASSERT_NE(window, nullptr);
      use(*window);
      used = true;
      window->queryUnload();
    });
    p.Do([this] { term.cmdTop[1].click(); });
    EXPECT_TRUE(used);
    p.loop.Run(5);
  }

  /// Loads a file, and confirms the window with the changes. Returns what the window shows as its summary.
  std::string Load(frmDev& window, const std::string& file) {
    p.dialogs.shown.clear();
    p.dialogs.file = p.folder.Path() / file;
    std::string summary;
    p.loop.After(std::chrono::seconds(5), [&] {
      auto* const changes = p.windows.Shown<frmChanges>();
      if (changes == nullptr) return;
      summary = changes->lblSummary.caption;
      EXPECT_LT(changes->txtChanges.Text().size(), 2'000'000U) << file;
      changes->cmdCancel.click();
    });
    window.mnuLoad.click();
    return summary;
  }

  /// The texts of the boxes, without the question for a file.
  std::string Boxes() {
    std::string all;
    for (const std::string& text : std::exchange(p.dialogs.shown, {})) {
      if (!text.starts_with("open/") && !text.starts_with("save/")) all += '[' + text + ']';
    }
    return all;
  }

  Texts FilesIn(const std::string& folder) const {
    Texts names;
    for (const auto& entry : fs::directory_iterator(p.folder.Path() / folder))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(BadInputTest, EachReplyIsShownAsFarAsItIsAConfiguration) {
  const std::string entry = "<dd>1 0 0 20 0 0 1 255 255 255 0 0 1 ffffff unset 0|";
  struct Case {
    std::string_view name;
    std::string reply;
    std::optional<Texts> devices;  ///< None: the reply cannot be read.
  };
  const std::vector<Case> cases{
      {"empty", "<SL>001<EOL>", Texts{}},
      {"begins in its end", "<SL><EOL>", std::nullopt},
      {"no end", "<SL>001" + entry, std::nullopt},
      {"10 MB without an end", "<SL>001" + Times(200'000, entry), std::nullopt},
      {"10 MB without a mark", std::string(10'000'000, 'x'), std::nullopt},
      {"20 MB, the end too late", "<SL>001" + entry + std::string(20'000'000, '|') + "<EOL>", std::nullopt},
      {"an entry of 10 MB", "<SL>001<dd>1 0 0 " + std::string(10'000'000, '2') + "|<EOL>", std::nullopt},
      {"100,000 entries", "<SL>001" + Numbered(1, 100'000, "<dd>", " 0 0 20|") + "<EOL>", std::nullopt},
      {"100,000 elements, one of them an entry", "<SL>001" + Times(100'000, "<xx>1|") + entry + "<EOL>",
       Texts{"Terminal Id: 01.  MSN: 20"}},
      {"Ids", "<SL>001<dd>0 0 0 20|<dd>-5 0 0 21|<dd>-99999 0 0 22|<dd>256 0 0 23|<dd>32767 0 0 24|<EOL>",
       Texts{"Terminal Id: 100.  MSN: 23", "Terminal Id: 7FFF.  MSN: 24"}},
      {"an Id twice, and an entry twice", "<SL>001<dd>7 0 0 20|<dd>7 0 0 21|<dd>7 0 0 20|<EOL>",
       Texts{"Terminal Id: 07.  MSN: 20", "Terminal Id: 07.  MSN: 21"}},
      {"a bar in a name", "<SL>001<dd>7 0 0 20 0 0 1 255 255 255 0 0 1 ffffff A|B 0|<EOL>",
       Texts{"Terminal Id: 07.  MSN: 20"}},
      {"numbers that overflow",
       "<SL>001<dd>65537 0 0 20|<dd>8 0 4294967296 21|<dd>9 0 0 99999999999999999999 1e300|<dd>&h100000001 0|"
       "<EOL>",
       Texts{"Terminal Id: 09.  MSN: 99999999999999999999"}},
      {"control characters", "<SL>001<dd>7 0 0 2\0\x1B\r\n|<EOL>"s,
       Texts{"Terminal Id: 07.  MSN: 2\0\x1B\r\n"s}},
  };
  for (const Case& c : cases) {
    modem.Answer("gadd\r\n", c.reply);
    p.folder.Write("saved.cfg", "an older configuration");
    p.dialogs.file = p.folder.Path() / "saved.cfg";
    Visit([&](frmDev& window) {
      Texts devices;
      const Tree& tree = window.treedev.tree();
      for (int node = 0; node < tree.Count(); ++node) {
        if (!tree[node].tag.empty()) devices.push_back(tree[node].text);
      }
      EXPECT_EQ(devices, c.devices.value_or(Texts{})) << c.name;
      EXPECT_EQ(window.StatusBar1.Text(1), "Ready") << c.name;
      EXPECT_EQ(window.StatusBar1.Text(2), c.devices ? "" : "The configuration could not be read") << c.name;
      window.mnuSave.click();
      EXPECT_EQ(Boxes(), c.devices ? "" : "[Cannot save this item]") << c.name;
      EXPECT_EQ(p.folder.Read("saved.cfg") == "an older configuration", !c.devices) << c.name;
    });
    EXPECT_EQ(term.main().mode, ModemMode::Terminal) << c.name;
  }
}

TEST_F(BadInputTest, AnEntryWithACommaIsShownButNotEdited) {
  modem.Answer("gadd\r\n",
               "<SL>001<dd>7 0 0 2,0 0 0 1 255 255 255 0 0 1 ffffff unset 0|"
               "<dd>49 0 0 21 0 0 1 255 1 255 1 0 1 ffffff AFT,CABIN 0|"
               "<dd>50 0 1 31 0 0 1 255 1 255 1 0 1 ffffff AFT,CABIN 0|"
               "<dd>81 3 4 6,0 0 0 1 255 255 255 0 0 1 ffffff unset 0|<EOL>");
  const std::string refused = "[This entry cannot be edited, because its MSN or name contains a comma]";
  Visit([&](frmDev& window) {
    for (int node = 0; node < window.treedev.tree().Count(); ++node) {
      if (!window.treedev.tree()[node].tag.empty()) window.treedev.selected = node;
    }
    window.mnuPopEdit.click();
    EXPECT_EQ(Boxes(), refused);
    window.treeQuil.selected = window.treeQuil.tree().First();
    window.EditHs.click();
    EXPECT_EQ(Boxes(), refused);
    window.cmdPortEdit[0].click();
    EXPECT_EQ(Boxes(), refused);
  });
}

TEST_F(BadInputTest, AFileThatIsNoConfigurationIsRefusedBeforeAnythingIsSent) {
  const auto& folder = p.folder;
  folder.Write("empty.cfg", "");
  folder.Write("binary.cfg", std::string(200'000, '\xFF') + std::string(10, '\0'));
  folder.Write("long.cfg", Times(kMostEntries, std::string(200, 'x') + ' ' + std::string(200, 'y') + "\r\n"));
  folder.Write("many.cfg", Numbered(1, 100'000, "", " 0 0 20\r\n"));
  folder.Write("line-ends.cfg", std::string(16 << 20, '\n'));
  folder.Write("odd.cfg", "\0\r\n7,0 0 20\r\n70000 0 0 20\n"s);
  folder.Write("huge.cfg", "");
  fs::resize_file(folder.Path() / "huge.cfg", 1u << 30);
  fs::create_directory(folder.Path() / "folder.cfg");
  folder.Write("locked.cfg", "1 0 0 20\r\n");
  fs::permissions(folder.Path() / "locked.cfg", fs::perms::none);
  const bool mayRead = std::ifstream(folder.Path() / "locked.cfg").good();  // the user may be root
  struct Case {
    std::string file;
    std::string_view summary;
  };
  std::vector<Case> cases{
      {"empty.cfg", "0 added, 9 removed, 0 changed, 0 unchanged"},
      {"long.cfg", "32767 added, 9 removed, 0 changed, 0 unchanged"},
      {"odd.cfg", "3 added, 9 removed, 0 changed, 0 unchanged"},
      {"binary.cfg", ""},
      {"many.cfg", ""},
      {"line-ends.cfg", ""},
      {"huge.cfg", ""},
      {"folder.cfg", ""},
      {"gone.cfg", ""},
      {"folder.cfg/gone.cfg", ""},
      {"locked.cfg", mayRead ? "0 added, 8 removed, 0 changed, 1 unchanged" : ""},
  };
  // Larger than the size that it reports, like a file that grows while it is read.
  if (fs::exists("/proc/self/status")) cases.push_back({"/proc/self/status", ""});
  Visit([&](frmDev& window) {
    for (const Case& c : cases) {
      p.comPort.sent.clear();
      EXPECT_EQ(Load(window, c.file), c.summary) << c.file;
      EXPECT_EQ(Boxes(), c.summary.empty() ? "[The file cannot be read]" : "") << c.file;
      EXPECT_EQ(p.comPort.sent, "gfd\r\ngtlevel\r\ngtlevel\r\n") << c.file;
    }
  });
  EXPECT_FALSE(fs::exists(folder.Path() / "backups"));
}

TEST_F(BadInputTest, AFullDiskLeavesTheOldFileAndNoOther) {
  if (!test::DiskRoom::kWorks) GTEST_SKIP() << "the system has no limit for the size of files";
  test::DiskRoom room;
  Visit([&](frmDev& window) {
    p.dialogs.file = p.folder.Path() / "saved.cfg";
    window.mnuSave.click();
    const std::string whole = p.folder.Read("saved.cfg");
    ASSERT_EQ(Boxes(), "");
    const Texts before = FilesIn(".");
    const std::string old = "an older configuration";
    for (const bool others : {false, true}) {
      p.files.othersFiles = others;
      for (const long size : {0L, 1L, 30L, static_cast<long>(whole.size()) - 1}) {
        p.folder.Write("saved.cfg", old);
        for (const std::string file : {"saved.cfg", "new.cfg"}) {
          p.dialogs.file = p.folder.Path() / file;
          room.Set(size);
          window.mnuSave.click();
          room.Set(test::DiskRoom::kAny);
          EXPECT_TRUE(Boxes().starts_with("[Cannot save this item]")) << size;
          EXPECT_EQ(p.folder.Read("saved.cfg"), old) << size;
          EXPECT_EQ(FilesIn("."), before) << size;
        }
      }
    }
  });
}

TEST_F(BadInputTest, ABackupIsWholeOrTheUserIsAsked) {
  const std::string question =
      "[This will overwrite the current configuration and restart the terminal/Device Manager]"
      "[The backup of the configuration could not be written.\r\nGo on without a backup?/Device Manager]";
  test::DiskRoom room;
  Visit([&](frmDev& window) {
    // The user refuses in the second box.
    p.dialogs.onBox = [&] { p.dialogs.answer = p.dialogs.shown.size() > 1 ? Answer::Cancel : Answer::Ok; };
    if (test::DiskRoom::kWorks) {
      for (const long size : {0L, 1L, 100L}) {
        room.Set(size);
        window.mnuFactory.click();
        room.Set(test::DiskRoom::kAny);
        EXPECT_EQ(Boxes(), question) << size;
        EXPECT_EQ(FilesIn("backups"), Texts{}) << size;
      }
    }
    fs::remove_all(p.folder.Path() / "backups");
    fs::create_symlink("nowhere/at/all", p.folder.Path() / "backups");
    window.mnuFactory.click();
    EXPECT_EQ(Boxes(), question);
  });
  EXPECT_EQ(p.comPort.sent.find("ladd"), std::string::npos);
}

TEST_F(BadInputTest, TheFiftyNewestBackupsAreKept) {
  const Texts others{"Quil Heron 2006-03-31 100000.txt", "my own.cfg", "x 2006-1-1 100000.cfg"};
  fs::create_directory(p.folder.Path() / "backups");
  for (const std::string& name : others) p.folder.Write("backups/" + name, "");
  // The oldest ones sort last by name, and the clock of one terminal was wrong.
  Texts backups;
  for (int day = 10; day < 70; ++day) {
    backups.push_back((day < 20 ? "Zenith 20" : "Alpha 20") + std::to_string(day) + "-01-01 000000.cfg");
    p.folder.Write("backups/" + backups.back(), "");
  }
  ConfigBackups keep(p.files, (p.folder.Path() / "backups").string());
  Texts kept(backups.end() - 49, backups.end());
  kept.push_back("Quil Heron 1970-01-01 000000.cfg");
  EXPECT_TRUE(keep.Save("Quil Heron", 0, {"1 0 0 20"}));
  kept.insert(kept.end(), others.begin(), others.end());
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(FilesIn("backups"), kept);
  EXPECT_EQ(p.folder.Read("backups/Quil Heron 1970-01-01 000000.cfg"), "1 0 0 20\r\n");
}

}  // namespace
}  // namespace corvex
