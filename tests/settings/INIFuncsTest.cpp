#include "settings/INIFuncs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "support/FakeFiles.h"
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
  test::FakeFiles files;
  SettingsStore settings{folder.Name(), files};
};

TEST_F(StoredSettings, WithoutAFileEveryReadReturnsItsDefaultAndCreatesNothing) {
  EXPECT_TRUE(settings.printer.fileuse.IsAppend());
  EXPECT_EQ(settings.port.com.Get(), "1");
  EXPECT_EQ(settings.port.com.GetOrUnsaved(), "?");
  EXPECT_EQ(settings.devices.Get(16), "");
  EXPECT_EQ(settings.config.doidpath.Get(), InFolder(""));
  EXPECT_EQ(folder.Count(), 0);
}

TEST_F(StoredSettings, TextsAreReadByTheirType) {
  folder.Write("corvex.ini",
               "[config]\nphone=r1\ntestmode=YES\nlan=true\nmmiphase=1 or so\nsound=Beep\n"
               "[logging]\ninterval=ten\n[positions]\ntermtop=99999999999\ntermleft=-15.5\n"
               "[printer]\nalways=File\nfileuse=yes\n[devices]\ncom3=/dev/ttyUSB0\n");
  EXPECT_EQ(settings.config.phone.Get(), "R1");
  EXPECT_FALSE(settings.config.testmode.Get()) << "the word is case-sensitive";
  EXPECT_FALSE(settings.config.lan.Get());
  EXPECT_EQ(settings.config.mmiphase.Get(), 1);
  EXPECT_FALSE(settings.config.sound.IsBeep());
  EXPECT_EQ(settings.logging.interval.Get(), 0);
  EXPECT_EQ(settings.positions.termtop.Get(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(settings.positions.termleft.Get(), -16);
  EXPECT_FALSE(settings.printer.always.IsFile() || settings.printer.always.IsPrint());
  EXPECT_FALSE(settings.printer.fileuse.IsAppend());
  EXPECT_EQ(settings.devices.Get(3), "/dev/ttyUSB0");
  for (const std::int16_t port : {-1, 0, 17}) EXPECT_EQ(settings.devices.Get(port), "");
}

TEST_F(StoredSettings, LineEndsAreRemovedFromTheCallersValueButNotInTheFile) {
  std::string value = "a\rb\r\nc";
  settings.WriteSetting("config", "brand", value);
  EXPECT_EQ(value, "a b  c");
  EXPECT_EQ(File(), "[config]\r\nbrand=a\rb\r\nc\r\n");
  std::string host = "ship\r";
  settings.config.lanaddress.Set(host);
  EXPECT_EQ(host, "ship ");
}

TEST_F(StoredSettings, TheNextReadSeesTheWriteOfAnotherProgram) {
  settings.port.com.Set("3");
  SettingsStore(folder.Name(), files).port.com.Set("4");
  EXPECT_EQ(settings.port.com.GetOrUnsaved(), "4");
  folder.Write("corvex.ini", "[port]\ncom=5\n");
  EXPECT_EQ(settings.port.com.Get(), "5");
}

}  // namespace
}  // namespace corvex
