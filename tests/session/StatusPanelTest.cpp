#include "session/StatusPanel.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Program.h"

namespace corvex {
namespace {

using test::Program;
using test::Responder;

struct StatusPanelTest : test::SessionTest {
  void FeedTag(const std::string& tag, const std::string& payload = {}) {
    Feed("<tml><" + tag + ">" + payload + "</tml>");
  }
};

TEST_F(StatusPanelTest, TheTimeMovesOverTheZoneWhenThereIsNone) {
  struct Case {
    const char* tag;
    const char* payload;
    const char* time;
    const char* toolTip;
    const char* zone;
    Twips left;
  };
  // One after the other: what a tag does not tell stays as the one before has left it.
  for (const auto& [tag, payload, time, toolTip, zone, left] : std::vector<Case>{
           {"Time", "09:59", "09:59", "", "", 6000},
           {"Date", "10:00|2006.3.31|UTC", "10:00", "31/3/2006", "UTC", 4905},
           {"Time", "10:01", "10:01", "31/3/2006", "UTC", 4905},
           {"Date", "10:02|2006.4.1", "10:02", "1/4/2006", "UTC", 6000},
           {"Date", "10:03|2006.4|CET", "10:03", "", "CET", 4905},
           {"Date", "10:04|2006.99999.1|CET", "10:04", "", "CET", 4905},
           {"Date", "10:05|soon|", "10:05", "", "CET", 6000},
           {"Date", "", "", "", "CET", 6000},
       }) {
    SCOPED_TRACE(payload);
    FeedTag(tag, payload);
    EXPECT_EQ(term.lblTime.caption, time);
    EXPECT_EQ(term.lblTime.toolTip, toolTip);
    EXPECT_EQ(term.lblTime.rect.Get().left, left);
    EXPECT_EQ(term.lblZone.caption, zone);
    EXPECT_GT(term.lblTime.order(), term.lblZone.order());
  }
}

TEST_F(StatusPanelTest, ATextIsShownAsItsTagSays) {
  struct Case {
    const char* tag;
    Label& label;
    const char* payload;
    const char* caption;  // nothing stands for a hidden label, too
  };
  for (const auto& [tag, label, payload, caption] :
       {Case{"Temp", term.lblTemp, "31", "31C"}, Case{"Temp", term.lblTemp, " ", ""},
        Case{"Temp", term.lblTemp, "", "C"}, Case{"Temp", term.lblTemp, "32767", "32767C"},
        Case{"Temp", term.lblTemp, "40000", ""}, Case{"Temp", term.lblTemp, "hot", "hotC"},
        Case{"Temp", term.lblTemp, "-40000", ""}, Case{"PsuTemp", term.lblTempPsu, "-5", "-5C"},
        Case{"PsuTemp", term.lblTempPsu, " ", ""}, Case{"PsuTemp", term.lblTempPsu, "40000", ""},
        // A beam is named by the first words that fit.
        Case{"Spotinfo", term.lblSpot, "Spot Beam 4", "SPT"},
        Case{"Spotinfo", term.lblSpot, "spot beam selection failed", "SBS"},
        Case{"Spotinfo", term.lblSpot, "Global, no spot beam", "SPT"},
        Case{"Spotinfo", term.lblSpot, "Global beam", "GLB"},
        Case{"Spotinfo", term.lblSpot, "Global fail", "SBS"}, Case{"Spotinfo", term.lblSpot, "", "SBS"},
        Case{"Sig", term.corvexLbl[TermControls::kSignal], "42", "42"},
        Case{"GpsPos", term.lblGps[0], "59 N 10 E", "59 N 10 E"},
        Case{"gpshead", term.lblGps[1], "NE 12 kn", "NE 12 kn"}}) {
    FeedTag(tag, payload);
    EXPECT_EQ(label.visible ? label.caption.Get() : "", caption) << tag << " '" << payload << "'";
  }
  EXPECT_EQ(term.lblSpot.toolTip, "");
  FeedTag("MUBinfo", "MUB 2");
  EXPECT_EQ(term.caption, "Quil Heron  MUB 2");
  for (const char* payload : {"user", "service", "SuperUsers"}) {
    FeedTag("Userinfo", payload);
    EXPECT_EQ(term.mnuUpgrade.enabled, payload == std::string("service")) << payload;
  }
}

TEST_F(StatusPanelTest, CompressionKeepsItsToolTipWhenItEnds) {
  FeedTag("V42b", "2048 words");
  EXPECT_TRUE(term.lblComp.visible);
  EXPECT_EQ(term.lblComp.caption, "v42bis");
  EXPECT_EQ(term.lblComp.toolTip, "2048 words");
  FeedTag("V44", "both ways");
  EXPECT_EQ(term.lblComp.caption, "v44");
  EXPECT_EQ(term.lblComp.toolTip, "both ways");
  FeedTag("none", "over");
  EXPECT_FALSE(term.lblComp.visible);
  EXPECT_EQ(term.lblComp.caption, "   ");
  EXPECT_EQ(term.lblComp.toolTip, "both ways");
  // No flag gathers them: of several in one burst the last one stands, whatever they are.
  Feed("<tml><none></tml><tml><V44>4</tml><tml><V42b>42</tml>");
  EXPECT_EQ(term.lblComp.caption, "v42bis");
  EXPECT_EQ(term.lblComp.toolTip, "42");
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

TEST_F(StatusPanelTest, InOneBurstMailWinsOverNoMailAndNoSimOverSim) {
  struct Case {
    const char* bytes;
    bool mail;
    bool sim;
  };
  for (const auto& [bytes, mail, sim] : std::vector<Case>{
           {"<tml><NewMail></tml><tml><Sim></tml>", true, true},
           {"<tml><NoMail></tml><tml><NoSim></tml>", false, false},
           {"<tml><Mail></tml><tml><NoMail></tml><tml><NoSim></tml><tml><Sim></tml>", true, false},
           {"<tml><NoMail></tml><tml><Sim></tml>", false, true},
           {"<tml><NewMail></tml><tml><NoMail></tml>", true, true}}) {
    Feed(bytes);
    EXPECT_EQ(term.imgMail[0].visible, mail) << bytes;
    EXPECT_EQ(term.lblsim.visible, sim) << bytes;
  }
}

}  // namespace
}  // namespace corvex
