#include <gtest/gtest.h>

#include "link/modTelnet.h"
#include "support/Program.h"

// The rest of the login is tested in tests/data/streams/login.txt.

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

}  // namespace
}  // namespace corvex
