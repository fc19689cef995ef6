#include <gtest/gtest.h>

#include <filesystem>

#include "support/Program.h"

namespace corvex {
namespace {

using test::Program;

/// Puts a folder in the place of the settings file.
void Spoil(const Program& p) {
  std::filesystem::remove(p.settings.File());
  std::filesystem::create_directory(p.settings.File());
}

TEST(SettingsAlarm, ComesOnceAndHoldsUpNothing) {
  for (const bool writing : {false, true}) {
    Program p;
    test::Responder modem(p.comPort, test::HeronModem());
    p.dialogs.onBox = [&] {
      const auto answered = p.loop.Now() + std::chrono::seconds(20);
      while (p.loop.Now() < answered) p.loop.Pump(answered);
      EXPECT_EQ(p.term.main().mode, ModemMode::Terminal) << "the box stands in the way of the first connect";
    };
    if (writing) {
      p.settings.config.lan.Set(false);
      std::filesystem::permissions(p.settings.File(), std::filesystem::perms::owner_read);
    } else {
      Spoil(p);
    }
    p.Start(30);
    const std::string file = p.settings.File();
    const std::string told =
        writing ? "Cannot write the settings file\n" + file + "\nChanged settings are not kept."
                : "Cannot read the settings file\n" + file + "\nCorvex works with default settings.";
    EXPECT_EQ(p.dialogs.shown, std::vector{told});
    Spoil(p);
    p.Do([&] { p.term.mnuGPS.click(); });
    p.loop.Run(60);
    EXPECT_EQ(p.dialogs.shown.size(), 1u);
  }
}

TEST(SettingsAlarm, IsSilentWhileTheProgramEnds) {
  test::Session s;
  Spoil(s.p);
  s.p.Do([&] { s.term.mnuExit.click(); });
  s.p.loop.Run(2);
  EXPECT_TRUE(s.p.loop.Ended());
  EXPECT_TRUE(s.p.dialogs.shown.empty()) << s.p.dialogs.shown[0];
}

}  // namespace
}  // namespace corvex
