#include <gtest/gtest.h>

#include <algorithm>

#include "session/Route.h"

// Whole sessions on each route, from the start of the program to its end. tests/data/routes holds the bytes
// of both directions and their times.

namespace corvex {
namespace {

using test::Route;
using test::Routed;

class RoutesTest : public ::testing::TestWithParam<Route> {};

TEST_P(RoutesTest, PassesTheBytesOfItsRecording) {
  simulation::ErbOptions options;
  options.unit = {.tick = std::chrono::seconds(5), .trace = false};
  Routed r(GetParam(), options);
  r.p.settings.logging.wirelog.Set(true);
  r.p.Start(0.2);
  ASSERT_NO_FATAL_FAILURE(test::WalkThrough(r, [&r](const test::Step& step) {
    step.AllKeys(r.term);
    r.p.Do([&] { step.act(r.term); });
  }));
  if (r.HasErb()) {
    const std::pair<MenuItem*, const char*> mubs[] = {
        {&r.term.mnuSlaveONMaster, "Quil Lark  Slave MUB on Master SDU"},
        {&r.term.mnuMasterONSlave, "Quil Wren  Master MUB on Slave SDU"},
        {&r.term.mnuSlaveONSlave, " Kestrel Slave MUB on Slave SDU"},
        {&r.term.mnuMasterONMaster, "Quil Heron  Master MUB on Master SDU"}};
    for (const auto& [entry, title] : mubs) {
      r.p.Do([&, chosen = entry] { chosen->click(); });
      r.p.loop.Run(0.5);
      EXPECT_EQ(r.term.caption.Get(), title);
      EXPECT_EQ(r.UnitShows(), "idle");
    }
  }
  r.p.Do([&] { r.term.mnuExit.click(); });
  EXPECT_TRUE(r.p.loop.Ended());

  const std::string name = test::RouteName(GetParam());
  test::ExpectRecorded(test::WireLog(r), CORVEX_TEST_DATA "/routes/" + name + ".log");
}

TEST_P(RoutesTest, AKeyThatFindsTheLinkDownOpensItOnce) {
  Routed r(GetParam());
  r.p.Start(2);
  ASSERT_EQ(r.UnitShows(), "idle");
  r.hangUp();
  r.p.comPort.available = true;
  r.p.loop.Run(0.1);
  const std::size_t before = r.Sent().size();
  const double began = r.Now();
  r.p.Do([&] { r.term.cmdSK[0].click(); });
  EXPECT_LT(r.Now() - began, 1.5);
  r.p.comPort.LetLeave();
  EXPECT_TRUE(r.Sent().ends_with("\x15")) << r.Sent().substr(before);
  EXPECT_NE(r.unit(), nullptr);
  r.p.loop.Run(20);
  EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(r.UnitShows(), r.route == Route::SerialErb ? "main" : "idle");
}

TEST_P(RoutesTest, ComesBackFromAHangUpAfterAnyByteOfItsDialogue) {
  constexpr std::uint64_t kWholeDialogue = 210;
  for (std::uint64_t bytes = 1; bytes <= kWholeDialogue; ++bytes) {
    SCOPED_TRACE("hung up after " + std::to_string(bytes));
    Routed r(GetParam());
    r.setFaults({.hangUpAfter = bytes});
    r.p.loop.After(std::chrono::seconds(4), [&r] {
      r.setFaults({});
      r.p.comPort.available = true;
    });
    r.p.Start(40);
    test::ExpectSessionOrWait(r);
    r.p.Do([&] { r.term.mnuTerminal.click(); });
    EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(r.UnitShows(), "idle");
  }
}

TEST_P(RoutesTest, ATickingUnitKeepsItsSessionForAnHour) {
  Routed r(GetParam());
  r.p.Start(3600);
  EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(r.UnitShows(), "idle");
  EXPECT_EQ(std::count(r.Sent().begin(), r.Sent().end(), 'g'), 1) << "more than one probe: " << r.Sent();
}

TEST_P(RoutesTest, ComesBackWhenTheFarSideHasStartedOver) {
  Routed r(GetParam());
  r.p.Start(2);
  r.hear("AT+ERB_TRANSPARENT_MODE\x18");
  EXPECT_EQ(r.UnitShows(), "");
  r.p.loop.Run(30);
  EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
  EXPECT_EQ(r.UnitShows(), "idle");
}

class ErbRoutesTest : public RoutesTest {};

TEST_P(ErbRoutesTest, AnImpatientUserGetsAnotherMubToo) {
  for (int after = 10; after < 500; after += 40) {
    SCOPED_TRACE(after);
    Routed r(GetParam());
    r.p.Start(2);
    r.p.loop.After(std::chrono::milliseconds(after),
                   [&r] { r.p.loop.Enter([&r] { r.term.mnuTerminal.click(); }); });
    r.p.Do([&r] { r.term.mnuMasterONSlave.click(); });
    r.p.loop.Run(5);
    EXPECT_EQ(r.term.caption.Get(), "Quil Wren  Master MUB on Slave SDU");
    EXPECT_EQ(r.UnitShows(), "idle");
  }
}

// An empty prompt matches any text, so a login with one may never succeed. Sends and boxes must stay bounded.
TEST_P(ErbRoutesTest, SaysLittleWhateverThePromptsAre) {
  for (std::string text : {std::string(), std::string(" "), std::string("*"), std::string(100'000, 'x')}) {
    for (const char* prompt :
         {"promptusername", "promptpassword", "prompttelnet", "connected", "muberror", "incorrect"}) {
      SCOPED_TRACE(std::string(prompt) + " = " + text.substr(0, 10));
      Routed r(GetParam());
      r.p.settings.WriteSetting("config", prompt, text);
      r.p.Start(60);
      EXPECT_LT(r.Sent().size(), 6000U);
      EXPECT_LT(r.p.dialogs.shown.size(), 500U);
      EXPECT_LT(r.Now(), 90);
    }
  }
}

TEST_P(ErbRoutesTest, AFloodOfPromptsCausesFewSends) {
  for (const char* prompt :
       {"\r\nERB login: ", "Password:", "ERB>", "modem 0 already in use", "Login incorrect", "<tml>"}) {
    SCOPED_TRACE(prompt);
    test::Program p;
    p.settings.config.lan.Set(Routed(GetParam()).IsLan());
    p.settings.config.erbaccess.Set(true);
    p.dialogs.onBox = [&p] { Pause(p.loop, 3); };
    std::function<void()> flood = [&] {
      for (int i = 0; i < 10; ++i) {
        p.sock.Arrive(prompt);
        p.comPort.Arrive(prompt);
      }
      if (p.loop.Now() < std::chrono::seconds(10)) p.loop.After(std::chrono::milliseconds(1), flood);
    };
    flood();
    p.Start(12);
    EXPECT_LT(p.sock.sent.size() + p.comPort.sent.size(), 3000U);
  }
}

std::string TestName(const ::testing::TestParamInfo<Route>& test) {
  std::string name = test::RouteName(test.param);
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}
INSTANTIATE_TEST_SUITE_P(All, RoutesTest, ::testing::ValuesIn(test::kRoutes), TestName);
INSTANTIATE_TEST_SUITE_P(All, ErbRoutesTest, ::testing::Values(Route::LanErb, Route::SerialErb), TestName);

}  // namespace
}  // namespace corvex
