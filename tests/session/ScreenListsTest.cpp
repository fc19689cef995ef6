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
  std::vector<std::string> MenuTexts() const {
    std::vector<std::string> texts;
    for (const auto& item : term.ListMenu.Items()) texts.push_back(item.text);
    return texts;
  }
};

using Texts = std::vector<std::string>;

TEST_F(ListsTest, AMainMenuHasAnExitItsItemsAndTheMail) {
  Feed("<tml><MenuScreen><Title>Main menu<1>001Call|5<2>abcSetup|64<30>012Log|0<4>xyz|63<INDEXLINE>30</tml>");
  EXPECT_TRUE(term.frmMenu.visible);
  EXPECT_TRUE(term.ListMenu.visible);
  EXPECT_EQ(term.frmMenu.caption, "Main menu");
  const std::vector<ListItem> expected{{"ESC", "Exit Menu", 53}, {" 1Men", " 1. Call", 5},
                                       {" 2Men", "Setup", 10},   {" 30Men", " 12. Log", 10},
                                       {" 4Men", "", 63},        {"MAIL", "Mail", 27}};
  EXPECT_EQ(term.ListMenu.Items(), expected);
  EXPECT_EQ(term.ListMenu.selected, 4);
  EXPECT_TRUE(term.ListMenu.HasFocus());
  EXPECT_EQ(term.ListMenu.iconSpacing, 75u);
}

TEST_F(ListsTest, ASubMenuHasNoMailAndABadItemLeavesTheListEmpty) {
  Feed("<tml><MenuScreen><Title>1.2 Setup<1>001A|5<INDEXLINE>9</tml>");
  EXPECT_EQ(MenuTexts(), (Texts{"Exit Menu", " 1. A"}));
  EXPECT_EQ(term.ListMenu.selected, 0);
  Feed("<tml><MenuScreen><Title>2 Bad<1>001A|5<2>002B<INDEXLINE>1</tml>");
  EXPECT_EQ(MenuTexts(), Texts{});
  EXPECT_TRUE(term.frmMenu.visible);
  Feed("<tml><MenuScreen>rubbish</tml>");
  EXPECT_EQ(MenuTexts(), (Texts{"Exit Menu", "Mail"}));
}

TEST_F(ListsTest, AMenuTakesTheSoftKeysAway) {
  Feed("<tml><Sk>Menu|3|||Book|7|Exit|0</tml>");
  EXPECT_EQ(term.cmdSK[0].caption, "&Menu");
  EXPECT_TRUE(term.cmdSK[0].enabled);
  EXPECT_EQ(term.imgKey[0].picture, "key 3");
  EXPECT_FALSE(term.cmdSK[1].enabled);
  EXPECT_FALSE(term.imgKey[1].visible);
  EXPECT_EQ(term.imgKey[3].picture, "key 2");  // 0 has the image of 2
  Feed("<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>");
  EXPECT_FALSE(term.cmdSK[0].enabled);
  EXPECT_EQ(term.cmdSK[0].caption, "");
}

TEST_F(ListsTest, AChoiceListTakesTheMenusPlaceAndGivesTheScreenBack) {
  Feed("<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>");
  Feed("<tml><ChoiceScreen><Title>Language<10>English<20>Norsk|x<INDEXLINE>20</tml>");
  EXPECT_FALSE(term.frmMenu.visible);
  EXPECT_TRUE(term.frmChoice.visible);
  EXPECT_EQ(term.frmChoice.caption, "Language");
  EXPECT_EQ(term.ListChoice.Items(), (Texts{"English", "Norsk|x"}));
  EXPECT_EQ(term.ListChoice.listIndex, 1);
  EXPECT_TRUE(term.ListChoice.HasFocus());
  Feed("<tml><CloseChoiceScreen></tml>");
  EXPECT_FALSE(term.frmChoice.visible);
}

TEST_F(ListsTest, ANewScreenIsHeldBackUntilTheModemHasDrawnIt) {
  Feed("<tml><MenuScreen><Title>1 A<1>001A|5<INDEXLINE>1</tml>");
  Feed("<tml><TableScreen></tml>\x1B[2;2HHeader<tml><Sig>31</tml>\x1B[4;5Hcursor");
  EXPECT_EQ(term.corvexLbl[0].caption, std::string(39, ' '));
  EXPECT_EQ(term.corvexLbl[TermControls::kSignal].caption, "31");  // the indicators do not wait
  Feed("<tml><Paint></tml>");
  EXPECT_FALSE(term.frmMenu.visible);
  EXPECT_TRUE(term.corvexLbl[0].caption.Get().starts_with("Header"));
  EXPECT_TRUE(term.corvexLbl[2].caption.Get().starts_with("   cursor"));
  // From now on rows show as they come, behind an item.
  Feed("\x1B[2;2HHEADER\x1B[H");
  EXPECT_TRUE(term.corvexLbl[0].caption.Get().starts_with("HEADER"));
}

TEST_F(ListsTest, AMessageStandsForItsTimeAndANewOneStartsItAnew) {
  Feed("<tml><MsgScreen>First|line two</tml>");
  EXPECT_TRUE(term.frmMsg.visible);
  EXPECT_EQ(term.LblMsg[0].caption, "First");
  EXPECT_EQ(term.LblMsg[1].caption, "line two");
  p.loop.Run(1);
  Feed("<tml><MsgScreen>Second</tml>");
  EXPECT_EQ(term.LblMsg[1].caption, "");
  p.loop.Run(1.5);
  EXPECT_TRUE(term.frmMsg.visible);
  p.loop.Run(0.2);
  EXPECT_FALSE(term.frmMsg.visible);
  EXPECT_EQ(term.LblMsg[0].caption, "");
}

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
