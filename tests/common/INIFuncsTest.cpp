#include "common/INIFuncs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <limits>

#include "support/TempFolder.h"

namespace corvex {
namespace {

using test::TempFolder;

class StoredSettings : public testing::Test {
 protected:
  std::string File() const { return folder.Read("corvex.ini"); }
  std::string InFolder(const std::string& name) const {
    const auto separator = static_cast<char>(std::filesystem::path::preferred_separator);
    return folder.Name() + separator + name;
  }
  TempFolder folder;
  SettingsStore settings{folder.Name()};
};

/// Every accessor's result as a text: truths as "true" and "false".
struct Read {
  const char* section;
  const char* key;
  std::string byDefault;
  std::function<std::string(const SettingsStore&)> get;
};

std::string Show(const std::string& value) {
  return value;
}
std::string Show(std::int32_t value) {
  return std::to_string(value);
}
std::string Show(bool value) {
  return value ? "true" : "false";
}

#define READ(group, key, byDefault)                                                         \
  {                                                                                         \
#group, #key, byDefault, [](const SettingsStore& s) { return Show(s.group.key.Get()); } \
  }

const Read kReads[] = {
    READ(config, brand, "Quil"),
    READ(config, logo, "logo.gif"),
    READ(config, showgps, "true"),
    READ(config, phone, "R2"),
    READ(config, doidfile, ""),
    READ(config, testmode, "false"),
    READ(config, configmode, "true"),
    READ(config, trace, "false"),
    READ(config, atmode, "true"),
    READ(config, mmiphase, "2"),
    READ(config, lan, "false"),
    READ(config, lanaddress, "192.168.1.1"),
    READ(config, lanport, "3000"),
    READ(config, erbaccess, "false"),
    READ(config, promptusername, "ERB login"),
    READ(config, promptpassword, "Password"),
    READ(config, prompttelnet, "ERB>"),
    READ(config, username, "root"),
    READ(config, password, "zzz"),
    READ(config, mubselect, "0"),
    READ(config, connected, "connected to modem"),
    READ(config, muberror, "serial_open"),
    READ(config, incorrect, "Login incorrect"),
    READ(config, download, "unknown"),
    READ(config, blocks, "600"),
    READ(info, downloadtime, ""),
    READ(port, com, "1"),
    READ(port, settings, "38400,n,8,1"),
    READ(port, flow, "2"),
    READ(logging, active, "false"),
    READ(logging, interval, "5"),
    READ(logging, lasttime, ""),
    READ(logging, wirelog, "false"),
    READ(printer, font, "Arial"),
    READ(printer, fontsize, "12"),
    READ(printer, bold, "false"),
    READ(printer, italic, "false"),
    READ(printer, underline, "false"),
    READ(screen, font, "Courier"),
    READ(screen, fontsize, "12"),
    READ(screen, bold, "false"),
    READ(screen, italic, "false"),
    READ(screen, underline, "false"),
    READ(positions, termtop, "500"),
    READ(positions, termleft, "500"),
    READ(positions, trctop, "3000"),
    READ(positions, trcleft, "500"),
    {"config", "sound", "true", [](const SettingsStore& s) { return Show(s.config.sound.IsBeep()); }},
    {"printer", "always", "true", [](const SettingsStore& s) { return Show(s.printer.always.IsFile()); }},
    {"printer", "always", "false", [](const SettingsStore& s) { return Show(s.printer.always.IsPrint()); }},
    {"printer", "fileuse", "true", [](const SettingsStore& s) { return Show(s.printer.fileuse.IsAppend()); }},
    {"port", "com", "?", [](const SettingsStore& s) { return s.port.com.GetOrUnsaved(); }},
    {"devices", "com1", "", [](const SettingsStore& s) { return s.devices.Get(1); }},
    {"devices", "com16", "", [](const SettingsStore& s) { return s.devices.Get(16); }},
};

#undef READ

TEST_F(StoredSettings, WithoutAFileEveryReadGivesItsDefaultAndMakesNothing) {
  for (const Read& read : kReads) EXPECT_EQ(read.get(settings), read.byDefault) << read.key;
  EXPECT_EQ(settings.config.doidpath.Get(), InFolder(""));
  EXPECT_EQ(folder.Count(), 0);
}

TEST_F(StoredSettings, EveryReadLooksAtItsOwnKeyAndAtNoOther) {
  for (const Read& read : kReads) {
    // A text that gives another result than the default in each of the shapes.
    const bool truth = read.byDefault == "true" || read.byDefault == "false";
    const bool wanted = read.byDefault == "false";
    const std::string text = !truth                              ? "77"
                             : std::string(read.key) == "always" ? "print"
                             : wanted                            ? "yes"
                                                                 : "no";
    folder.Write("corvex.ini", "[" + std::string(read.section) + "]\n" + read.key + "=" + text + "\n");
    EXPECT_EQ(read.get(settings), truth ? Show(wanted) : text) << read.section << " " << read.key;
    for (const Read& other : kReads) {
      const bool same =
          std::string_view(other.section) == read.section && std::string_view(other.key) == read.key;
      if (same) continue;
      EXPECT_EQ(other.get(settings), other.byDefault) << other.key << " reads " << read.key;
    }
  }
}

TEST_F(StoredSettings, TextsAreTakenInTheirShapes) {
  folder.Write("corvex.ini",
               "[config]\nphone=r1\ntestmode=YES\nlan=true\nmmiphase=1 or so\nsound=Beep\ndoidfile=a.cfg\n"
               "doidpath=b\n"
               "[logging]\ninterval=ten\n[positions]\ntermtop=99999999999\ntermleft=-15.5\n"
               "[printer]\nalways=File\nfileuse=yes\npath=mine.txt\n[devices]\ncom3=/dev/ttyUSB0\n");
  EXPECT_EQ(settings.config.phone.Get(), "R1");
  EXPECT_FALSE(settings.config.testmode.Get()) << "the case of the word counts";
  EXPECT_FALSE(settings.config.lan.Get());
  EXPECT_EQ(settings.config.mmiphase.Get(), 1);
  EXPECT_FALSE(settings.config.sound.IsBeep());
  EXPECT_EQ(settings.config.doidfile.Get(), "a.cfg");
  EXPECT_EQ(settings.config.doidpath.Get(), "b");
  EXPECT_EQ(settings.logging.interval.Get(), 0);
  EXPECT_EQ(settings.positions.termtop.Get(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(settings.positions.termleft.Get(), -16);
  EXPECT_FALSE(settings.printer.always.IsFile() || settings.printer.always.IsPrint());
  EXPECT_FALSE(settings.printer.fileuse.IsAppend());
  EXPECT_EQ(settings.printer.path.Get(), "mine.txt");
  EXPECT_EQ(settings.devices.Get(3), "/dev/ttyUSB0");
  for (const std::int16_t port : {-1, 0, 17}) EXPECT_EQ(settings.devices.Get(port), "");
}

TEST_F(StoredSettings, WritesLeaveTheirWordsInTheFile) {
  settings.config.lan.Set(true);
  settings.config.showgps.Set(false);
  settings.config.mmiphase.Set(-1);
  settings.config.username.Set("admin");
  EXPECT_EQ(File(), "[config]\r\nlan=yes\r\nshowgps=no\r\nmmiphase=-1\r\nusername=admin\r\n");
  settings.positions.PrtViewtop.Set(30);
  settings.positions.PrtViewleft.Set(45);
  EXPECT_EQ(settings.ReadSetting("positions", "prtviewtop", ""), "30");
  EXPECT_EQ(settings.ReadSetting("positions", "prtviewleft", ""), "45");

  const auto written = [&](const char* section, const char* key) {
    return settings.ReadSetting(section, key, "");
  };
  settings.config.sound.SetCard();
  EXPECT_EQ(written("config", "sound"), "card");
  settings.config.sound.SetOff();
  EXPECT_EQ(written("config", "sound"), "off");
  settings.config.sound.SetBeep();
  EXPECT_EQ(written("config", "sound"), "beep");
  settings.printer.always.SetPrint();
  EXPECT_TRUE(settings.printer.always.IsPrint() && !settings.printer.always.IsFile());
  settings.printer.always.SetFile();
  EXPECT_TRUE(settings.printer.always.IsFile() && !settings.printer.always.IsPrint());
  settings.printer.fileuse.SetNew();
  EXPECT_EQ(written("printer", "fileuse"), "new");
  settings.printer.fileuse.SetAppend();
  EXPECT_TRUE(settings.printer.fileuse.IsAppend());
}

TEST_F(StoredSettings, ReadingThePrinterFileSettlesItOnce) {
  EXPECT_EQ(settings.printer.path.Get(), InFolder("printer.txt"));
  EXPECT_EQ(File(), "[printer]\r\npath=" + InFolder("printer.txt") + "\r\n");
  EXPECT_EQ(SettingsStore(folder.Name() + "/").printer.path.Get(), InFolder("printer.txt"));
}

TEST_F(StoredSettings, LineEndsInAValueAreCleanedForTheCallerAndNotForTheFile) {
  std::string value = "a\rb\r\nc";
  settings.WriteSetting("config", "brand", value);
  EXPECT_EQ(value, "a b  c");
  EXPECT_EQ(File(), "[config]\r\nbrand=a\rb\r\nc\r\n");
  std::string host = "ship\r";
  settings.config.lanaddress.Set(host);
  EXPECT_EQ(host, "ship ");
}

TEST_F(StoredSettings, AnotherProgramsWriteIsSeenByTheNextRead) {
  settings.port.com.Set("3");
  SettingsStore(folder.Name()).port.com.Set("4");
  EXPECT_EQ(settings.port.com.GetOrUnsaved(), "4");
  folder.Write("corvex.ini", "[port]\ncom=5\n");
  EXPECT_EQ(settings.port.com.Get(), "5");
}

TEST_F(StoredSettings, FileThatCannotBeWrittenLosesTheWriteInSilence) {
  std::filesystem::create_directory(folder.Path() / "corvex.ini");
  settings.config.lan.Set(true);
  EXPECT_FALSE(settings.config.lan.Get());
  EXPECT_EQ(settings.printer.path.Get(), InFolder("printer.txt")) << "built anew at each read then";
  EXPECT_EQ(folder.Count(), 1);
}

TEST(AppFolder, LosesOneSlashAndNoBackslash) {
  EXPECT_EQ(AppFolderOf("C:/Corvex/"), "C:/Corvex");
  EXPECT_EQ(AppFolderOf("/opt/corvex//"), "/opt/corvex/");
  EXPECT_EQ(AppFolderOf("C:\\"), "C:\\");
  EXPECT_EQ(AppFolderOf("/"), "");
  EXPECT_EQ(AppFolderOf(""), "");
  EXPECT_EQ(SettingsStore("/opt/").AppFolder(), "/opt");
}

}  // namespace
}  // namespace corvex
