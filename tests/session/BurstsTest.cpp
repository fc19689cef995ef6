// The stream comes in arbitrary pieces. The screen at the end must not depend on them.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/Program.h"
#include "support/Seen.h"

namespace corvex {
namespace {

using namespace std::chrono_literals;

/// A session over the LAN, where a receive event can come within the pause of a menu.
struct LanSession {
  LanSession() {
    p.settings.config.lan.Set(true);
    p.settings.printer.always.SetPrint();
    p.Start(3);
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
  }
  void Feed(std::string_view bytes, double seconds) {
    p.sock.Arrive(bytes);
    p.loop.Run(seconds);
  }
  std::string Shown() const {
    std::string shown = test::Seen(p.term) + "focus    " + p.term.Focused()->name() + '\n';
    for (const std::string& text : p.printers.printed) shown += "printed  " + text + '\n';
    return shown;
  }

  test::Program p;
  test::Responder modem{p.sock, test::HeronModem()};
};

std::string Packet(const std::string& content) {
  return "<tml>" + content + "</tml>";
}

std::string Painted(const std::string& screen, const std::string& row) {
  return Packet('<' + screen + '>') + "\x1B[3;2H" + row + Packet("<Paint>");
}

TEST(Bursts, LeaveTheSameScreenAsTheirPacketsOneByOne) {
  const std::vector<std::string> packets{
      Painted("TextScreen", "a text"),
      Painted("FieldScreen", "a form"),
      Painted("TableScreen", "a table"),
      Packet("<TextScreen>") + "\x1B[4;2Hstill being painted" + Packet("<Sig>40"),
      Packet("<MenuScreen><Title>Main menu<1>001Call|5<2>002Setup|7<INDEXLINE>2"),
      Packet("<MenuScreen><Title>2 Setup<1>001Port|5<INDEXLINE>1"),
      Packet("<ChoiceScreen><Title>Beam<1>Global<2>Spot<INDEXLINE>2"),
      Packet("<MsgScreen>Saved|to the card"),
      Packet("<CloseMenuScreen>"),
      Packet("<CloseChoiceScreen>"),
      Packet("<Sk>Menu|3||0|Back|5|Exit|4"),
      Packet("<Sk>Not|3|to|11|be|5|seen|4"),
      Packet("<Sk>Menu|3||0|Letters|1|Exit|4"),
      Packet("<StartPrint>") + Packet("<Print>012job") + Packet("<EndPrint>"),
      "\x1B[2J" + Packet("<Sig>41"),
  };
  LanSession oneByOne;
  LanSession burst;
  LanSession nested;  // each packet comes within the pause of the menu before it
  const auto feed = [&](const std::vector<std::size_t>& places) {
    std::string all;
    for (const std::size_t place : places) {
      all += packets[place];
      oneByOne.Feed(packets[place], 0.1);
      nested.Feed(packets[place], 0.005);
    }
    burst.Feed(all, 0.3);
    nested.p.loop.Run(0.3);
    return std::array{oneByOne.Shown(), burst.Shown(), nested.Shown()};
  };
  const auto settle = [&] {
    for (LanSession* session : {&oneByOne, &burst, &nested}) {
      session->p.printers.printed.clear();
      session->Feed(Packet("<Time>10:00"), 2.5);  // until the message is gone
    }
  };
  const auto compare = [&](const std::vector<std::size_t>& places) {
    const auto [expected, together, inPauses] = feed(places);
    ASSERT_EQ(together, expected) << testing::PrintToString(places);
    ASSERT_EQ(inPauses, expected) << testing::PrintToString(places);
    settle();
  };
  for (std::size_t a = 0; a < packets.size(); ++a) {
    for (std::size_t b = 0; b < packets.size(); ++b) {
      for (std::size_t c = 0; c < packets.size(); ++c) ASSERT_NO_FATAL_FAILURE(compare({a, b, c}));
    }
  }
  std::mt19937 random(1);
  for (int i = 0; i < 1000; ++i) {
    std::vector<std::size_t> places(4 + random() % 5);
    for (std::size_t& place : places) place = random() % packets.size();
    ASSERT_NO_FATAL_FAILURE(compare(places));
  }
}

TEST(Nesting, MenusWithinThePausesOfMenusDoNotPileUp) {
  LanSession session;
  int deepest = 0;
  int seen = 0;
  std::string title;
  for (int i = 1; i <= 2000; ++i) {
    session.p.loop.After(2ms * i, [&, i] {
      deepest = std::max(deepest, session.p.loop.Waits());
      if (session.p.term.frmMenu.visible && title != session.p.term.frmMenu.caption.Get()) {
        title = session.p.term.frmMenu.caption;
        ++seen;
      }
      session.p.sock.Arrive(
          Packet("<MenuScreen><Title>" + std::to_string(i) + " Menu<1>001Call|5<INDEXLINE>1"));
    });
  }
  session.p.loop.Run(4.2);
  EXPECT_EQ(deepest, 1);
  EXPECT_GT(seen, 40) << "some menus must be shown";
  EXPECT_EQ(session.p.term.frmMenu.caption, "2000 Menu");
  EXPECT_TRUE(session.p.term.ListMenu.HasFocus());
}

TEST(Nesting, ClicksOfAnImpatientUserDoNotPileUp) {
  // Every entry that starts a mode change is clicked during the waits of earlier ones, while menus come.
  for (const bool lan : {false, true}) {
    SCOPED_TRACE(lan);
    test::Program p;
    test::Responder serial(p.comPort, test::HeronModem());
    test::Responder socket(p.sock, test::HeronModem());
    p.settings.config.lan.Set(lan);
    p.Start(3);
    int deepest = 0;
    const std::vector<MenuItem*> entries{&p.term.mnuTerminal, &p.term.mnuTest,    &p.term.mnuPort,
                                         &p.term.mnuAT,       &p.term.mnuTrace,   &p.term.mnuMasterONSlave,
                                         &p.term.mnuOffline,  &p.term.mnuTerminal};
    for (int i = 0; i < 3000; ++i) {
      p.loop.After(7ms * i, [&, i] {
        deepest = std::max(deepest, p.loop.Waits());
        const std::string menu = Packet("<MenuScreen><Title>Menu<1>001Call|5<INDEXLINE>1") +
                                 (i % 50 == 0 ? Packet("<Shutdown>") : "");
        p.comPort.Arrive(menu);
        p.sock.Arrive(menu);
        const std::size_t step = static_cast<std::size_t>(i % 3 == 0 ? i / 3 : i / 40);
        p.loop.Enter([&] { entries[step % entries.size()]->click(); });
        if (i % 5 == 0) p.loop.Enter([&] { p.term.cmdESC.click(); });
      });
    }
    p.loop.Run(30);
    EXPECT_LE(deepest, 3) << "a mode change, a menu and a key";
    p.Do([&] { p.term.mnuTerminal.click(); });
    p.loop.Run(20);
    EXPECT_EQ(p.term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(p.loop.Waits(), 0);
  }
}

}  // namespace
}  // namespace corvex
