#include "session/ScreenLists.h"

#include <gtest/gtest.h>

#include "session/mListView.h"
#include "support/Program.h"

namespace corvex {
namespace {

using test::Program;
using test::Responder;

struct ListsTest : test::SessionTest {
  void Feed(std::string_view bytes) { SessionTest::Feed(bytes, 0.5); }
};

TEST_F(ListsTest, NoByteIsLostWhileAMenuIsBeingShown) {
  p.comPort.Arrive("<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>");
  // In the middle of the showing:
  p.loop.After(std::chrono::milliseconds(30), [&] { p.comPort.Arrive("<tml><Sig>31</tml>"); });
  p.loop.Run(0.5);
  EXPECT_EQ(term.corvexLbl[7].caption, "     ");  // waits in the port for the next event
  Feed("<tml><Sim></tml>");
  EXPECT_EQ(term.corvexLbl[7].caption, "31");
}

TEST_F(ListsTest, AMenuThatTheUserLeavesWhileItIsBeingShownStaysHidden) {
  p.comPort.Arrive("<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>");
  p.loop.After(std::chrono::milliseconds(30), [&] { p.loop.Enter([&] { term.mnuOffline.click(); }); });
  p.loop.Run(1);
  EXPECT_EQ(term.main().mode, ModemMode::Offline);
  EXPECT_FALSE(term.frmMenu.visible);
}

// Over the LAN packets are served while a menu is being shown.
TEST(ListsOverTheLan, TheLaterPacketWins) {
  const std::string menu = "<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>";
  for (const int delay : {10, 30, 50}) {
    Program p;
    p.settings.config.lan.Set(true);
    Responder modem(p.sock, test::HeronModem());
    p.Start(3);
    ASSERT_EQ(p.term.main().mode, ModemMode::Terminal);
    const auto feed = [&](const std::string& later) {
      p.sock.Arrive(menu);
      p.loop.After(std::chrono::milliseconds(delay), [&p, later] { p.sock.Arrive(later); });
      p.loop.Run(0.5);
    };
    feed("<tml><TextScreen></tml><tml><CloseMenuScreen></tml><tml><Sk>Go|3|||||Exit|4</tml>");
    EXPECT_FALSE(p.term.frmMenu.visible) << delay;
    EXPECT_EQ(p.term.cmdSK[0].caption, "&Go") << delay;
    feed("<tml><MenuScreen><Title>2 B<7>001B|5<INDEXLINE>7</tml>");
    EXPECT_TRUE(p.term.frmMenu.visible) << delay;
    EXPECT_EQ(p.term.frmMenu.caption, "2 B") << delay;
    EXPECT_EQ(p.term.ListMenu.Items().size(), 2u) << delay;
    EXPECT_EQ(p.term.ListMenu.selected, 2) << delay;
    EXPECT_FALSE(p.term.cmdSK[0].enabled) << delay;
  }
}

TEST(ListSpacing, ATextThatIsNoPairOfNumbersIsTold) {
  Program p;
  auto& list = p.term.ListMenu;
  for (const char* bad : {"75", "a,b", "", "75,99999"}) {
    SetListSpacing(list, bad, p.dialogs);
    EXPECT_EQ(p.dialogs.shown.back(), std::string("Error interpreting value: ") + bad);
  }
  EXPECT_EQ(list.iconSpacing, 0u);
  SetListSpacing(list, "75,-1", p.dialogs);
  EXPECT_EQ(list.iconSpacing, 0xFFFF004Bu);
}

}  // namespace
}  // namespace corvex
