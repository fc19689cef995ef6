#include <gtest/gtest.h>

#include "link/modTelnet.h"
#include "support/Program.h"

namespace corvex {
namespace {

/// Runs the login on prompts and notes what it sends.
struct LoginTest : ::testing::Test, test::FakePlatform {
  std::string sent;
  std::vector<std::string> asked;
  std::optional<std::string> typed;
  std::function<void()> whileAsked;
  TelnetLogin login{
      settings,
      {.writeText = [this](std::string_view text) { sent += text; },
       .writePassword = [this](std::string_view password) { sent += "*" + std::string(password); },
       .sendCancel = [this] { sent += '\x18'; },
       .ask =
           [this](std::string_view prompt, std::string_view title) {
             asked.push_back(std::string(prompt) + "|" + std::string(title));
             if (whileAsked) whileAsked();
             return typed;
           }}};
};

TEST_F(LoginTest, GoesFromPromptToPromptHoweverTheyAreCut) {
  settings.config.mubselect.Set(std::string("7"));  // sent as it stands
  for (const char c : std::string("erb LOGIN: Password: erb>  Connected to Modem")) login.LoginStep({&c, 1});
  EXPECT_EQ(sent, "root\r\n*zzzmodem 7\r\n");
  EXPECT_TRUE(login.LoginComplete());
}

TEST_F(LoginTest, TheOrderDecidesBetweenPromptsOfOnePiece) {
  login.LoginStep("serial_open failed\r\nERB login:");
  EXPECT_EQ(sent, "root\r\n");
  EXPECT_FALSE(login.LoginFailed());
  login.LoginStep("serial_open");
  EXPECT_TRUE(login.LoginFailed());
}

TEST_F(LoginTest, AModemInUseIsFreedForTheNextTime) {
  login.LoginStep("Already in use");
  EXPECT_EQ(sent, "killall -9 modem\r\n");
  EXPECT_TRUE(login.LoginFailed());
}

TEST_F(LoginTest, ARefusedPasswordIsAskedForAndStored) {
  typed = "new";
  login.LoginStep("Login incorrect");
  EXPECT_EQ(asked, std::vector<std::string>{"Enter password for root|Telnet login Mub 0"});
  EXPECT_EQ(settings.config.password.Get(), "new");
  EXPECT_EQ(sent, "\r\n\r\n");  // twice; that is meant
  typed = "";
  login.LoginStep("Login incorrect");
  EXPECT_EQ(settings.ReadSetting("config", "password", "?"), "");
  settings.config.password.Set("kept");
  typed.reset();
  login.LoginStep("Login incorrect");
  EXPECT_EQ(settings.config.password.Get(), "kept");
}

TEST_F(LoginTest, APasswordTypedAfterTheNextLoginIsStoredAndDisturbsNothing) {
  typed = "late";
  whileAsked = [this] {
    login.ResetLogin();
    login.LoginStep("connected to modem");
  };
  login.LoginStep("Login incorrect");
  EXPECT_EQ(settings.config.password.Get(), "late");
  EXPECT_EQ(sent, "");
  EXPECT_TRUE(login.LoginComplete());
}

TEST_F(LoginTest, AModemThatTalksAlreadyNeedsNoLogin) {
  login.LoginStep("<tml><Sig>");
  EXPECT_TRUE(login.LoginComplete());
  EXPECT_EQ(sent, "\x18");
  login.LoginStep("");
  EXPECT_EQ(sent, "\x18");
}

TEST(LoginRoutes, AreGivenUpAfterTheirTime) {
  struct Case {
    bool lan;
    const char* sent;
    double seconds;
  };
  for (const Case& c : {Case{true, "root\r\nAT+ERB_TRANSPARENT_MODE", 5.9},
                        Case{false, "AT+ERB_TRANSPARENT_MODE\r\nroot\r\n", 8.6}}) {
    test::Program p;
    p.settings.config.lan.Set(c.lan);
    p.settings.config.erbaccess.Set(true);
    p.sock.onOpened = [&] { p.sock.Arrive("ERB login:"); };
    p.comPort.onOpened = [&] { p.comPort.Arrive("ERB login:"); };
    p.Start(0.2);
    EXPECT_EQ(c.lan ? p.sock.sent : p.comPort.sent, c.sent);
    EXPECT_EQ(p.sock.RemotePort(), c.lan ? 24 : 0);
    EXPECT_EQ(p.dialogs.shown.size(), 1u);
    EXPECT_EQ(p.sock.GetState(), SocketControl::kClosed);
    // A start returns when the probe is over, whatever time that takes.
    EXPECT_NEAR(std::chrono::duration<double>(p.loop.Now()).count(), c.seconds, 0.5);
  }
}

TEST(LoginRoutes, AQuestionThatStaysOpenIsNotAskedAgainByTheWatchdog) {
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
