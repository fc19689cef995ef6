#include <gtest/gtest.h>

#include "link/modTelnet.h"
#include "support/Program.h"

// The password's question, which can stay open while the session goes on. The login itself is in
// tests/data/streams/login.txt.

namespace corvex {
namespace {

TEST(Login, APasswordTypedAfterTheNextLoginIsStoredAndDisturbsNothing) {
  test::FakePlatform p;
  std::string sent;
  TelnetLogin login{p.settings,
                    {.writeText = [&](std::string_view text) { sent += text; },
                     .writePassword = [&](std::string_view password) { sent += password; },
                     .sendCancel = [&] { sent += '\x18'; },
                     .ask = [&](std::string_view, std::string_view) -> std::optional<std::string> {
                       login.ResetLogin();
                       login.LoginStep("connected to modem");
                       return "late";
                     }}};
  login.LoginStep("Login incorrect");
  EXPECT_EQ(p.settings.config.password.Get(), "late");
  EXPECT_EQ(sent, "");
  EXPECT_TRUE(login.LoginComplete());
}

TEST(Login, AQuestionThatStaysOpenIsNotAskedAgainByTheWatchdog) {
  test::Program p;
  p.settings.config.lan.Set(true);
  p.settings.config.erbaccess.Set(true);
  p.windows.activates = false;
  p.sock.onOpened = [&] { p.sock.Arrive("Login incorrect"); };
  p.dialogs.onBox = [&] { Pause(p.loop, 60); };
  p.Start(0.2);
  p.term.tmrWatchdog.enabled = true;
  p.Do([&] { p.term.mnuTerminal.click(); });
  EXPECT_EQ(p.dialogs.shown.size(), 1u);
  EXPECT_EQ(p.sock.connects, 1);
  p.dialogs.onBox = nullptr;
  p.loop.Run(9);
  EXPECT_EQ(p.sock.connects, 2) << "it goes on once the user has answered";
}

}  // namespace
}  // namespace corvex
