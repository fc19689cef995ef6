#include "session/StatusPanel.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Program.h"

namespace corvex {
namespace {

struct StatusPanelTest : test::SessionTest {
  void FeedTag(const std::string& tag, const std::string& payload = {}) {
    Feed("<tml><" + tag + ">" + payload + "</tml>");
  }
};

TEST_F(StatusPanelTest, TheTimeMovesOverTheZoneWhenThereIsNone) {
  for (const auto& [date, left] :
       {std::pair("10:00|2006.3.31|UTC", 4905), std::pair("10:02|2006.4.1", 6000), std::pair("", 6000)}) {
    FeedTag("Date", date);
    EXPECT_EQ(term.lblTime.rect.Get().left, left) << date;
    EXPECT_GT(term.lblTime.order(), term.lblZone.order());
  }
}

TEST_F(StatusPanelTest, ATonesPitchIsItsValue) {
  using Beeps = std::vector<std::pair<double, int>>;
  struct Case {
    const char* payload;
    Beeps beeps;
  };
  for (const auto& [payload, beeps] : std::vector<Case>{{"0", {{310, 100}}},
                                                        {"30", {{400, 100}}},
                                                        {"32767", {{98611, 100}}},
                                                        {"-103", {{1, 100}}},
                                                        {"-104", {}},
                                                        {"-32768", {}},
                                                        {"40000", {}},
                                                        {"", {}}}) {
    p.sound.beeps.clear();
    FeedTag("STone", payload);
    EXPECT_EQ(p.sound.beeps, beeps) << payload;
    p.loop.Run(0.1);  // until it has ended
  }
}

TEST_F(StatusPanelTest, OneToneSoundsAtATimeAndNoneWithTheSoundOff) {
  FeedTag("STone", "-200");  // takes no time, as it is none
  FeedTag("STone", "0");
  p.loop.Run(0.08);
  FeedTag("STone", "10");
  EXPECT_EQ(p.sound.beeps.size(), 1u);
  p.loop.Run(0.01);
  FeedTag("STone", "20");
  ASSERT_EQ(p.sound.beeps.size(), 2u);
  EXPECT_EQ(p.sound.beeps.back().first, 370);
  p.loop.Run(1);
  p.settings.config.sound.SetOff();
  FeedTag("STone", "0");
  p.settings.config.sound.SetCard();
  FeedTag("STone", "0");
  EXPECT_EQ(p.sound.beeps.size(), 2u);
}

}  // namespace
}  // namespace corvex
