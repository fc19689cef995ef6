#include "unit/Unit.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/UnitLink.h"
#include "support/VirtualLoop.h"
#include "unit/Wire.h"

namespace corvex::simulation {
namespace {

using test::VirtualLoop;

constexpr std::int64_t kNoon = 1143806400;  // 2006-03-31 12:00

constexpr std::string_view kUp = "\x1b[A";
constexpr std::string_view kDown = "\x1b[B";
constexpr std::string_view kEscape = "\x1b";
constexpr std::string_view kCancel = "\x18";
constexpr std::string_view kRepaint = "\x12";

constexpr std::string_view kMainMenu =
    "<tml><Sk>|0|Mail|1||0||0</tml>"
    "<tml><MenuScreen><Title>Main menu<1>001Phone book|5<2>002Call|6<3>003Mail|27<4>004Setup|7<5>005SIM "
    "card|9"
    "<6>006Distress test|11<7>007Information|12<8>008Switch off|20<9>009Service|14<INDEXLINE>1</tml>"
    "<tml><Paint></tml>";

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// A unit alone, ticking so rarely that its ticks do not get in the way.
struct Bench {
  explicit Bench(UnitOptions options = {}, double tickSeconds = 3600)
      : unit(loop, Quiet(std::move(options), tickSeconds), [this](std::string_view bytes) { out += bytes; }) {
  }

  static UnitOptions Quiet(UnitOptions options, double tickSeconds) {
    options.startTime = kNoon;
    options.tick = std::chrono::milliseconds(static_cast<int>(tickSeconds * 1000));
    return options;
  }
  /// What the unit sends within this time, having been told these bytes.
  std::string Say(std::string_view bytes, double seconds = 0.1) {
    out.clear();
    unit.Receive(bytes);
    loop.Run(seconds);
    return out;
  }
  std::string StartTags() { return Say("AT+WQUILSTARTTMLB\r\n"); }

  VirtualLoop loop;
  std::string out;
  Unit unit;
};

TEST(Unit, AnswersAsAModemUntilTheTagStreamIsAskedFor) {
  Bench bench;
  EXPECT_EQ(bench.Say("\x18"
                      "ate1\r\n"),
            "ate1\r\r\nOK\r\n");
  EXPECT_EQ(bench.Say("at+gmm\r\n"), "at+gmm\r\r\n204417\r\n\r\nOK\r\n");
  EXPECT_EQ(bench.Say("ate0\r"), "ate0\r\r\nOK\r\n");
  EXPECT_EQ(bench.Say("AT+ERB_TRANSPARENT_MODE\r\n"), "\r\nOK\r\n");
  EXPECT_EQ(bench.Say("at+wquilcswvload\r\n"), "\r\nPROTOCOL 1\r\n\r\nOK\r\n");
  EXPECT_EQ(bench.Say("at+nonsense\r\n"), "\r\nERROR\r\n");
  EXPECT_EQ(bench.Say("quit\r\n\x1b\x12"), "") << "not for a modem";
  EXPECT_EQ(bench.Say("\b\batx\b\r"), "\r\nOK\r\n") << "a backspace takes back a character, if there is one";
  // The closing of a session has no line end; the next session must not find it in the line.
  bench.Say("AT+ERB_TRANSPARENT_MODE");
  EXPECT_EQ(bench.Say("\x18"
                      "at\r"),
            "\r\nOK\r\n");
}

TEST(Unit, SaysWhatItIsToldAboutModelAndUpgrade) {
  const std::pair<UpgradeAnswer, std::string_view> answers[] = {
      {UpgradeAnswer::Disallowed, "\r\nDISALLOWED\r\n\r\nOK\r\n"},
      {UpgradeAnswer::PasswordDisallowed, "\r\nPWDISALLOWED\r\n\r\nOK\r\n"},
      {UpgradeAnswer::Error, "\r\nERROR\r\n"},
  };
  for (const auto& [answer, reply] : answers) {
    Bench bench({.modelReply = "7700413", .upgrade = answer});
    bench.Say("ate0\r");
    EXPECT_EQ(bench.Say("at+wquilcswvload\r\n"), reply);
    EXPECT_EQ(bench.Say("at+gmm\r\n"), "\r\n7700413\r\n\r\nOK\r\n");
  }
}

TEST(Unit, KeepsNoMoreOfALineThanItsLimit) {
  Bench bench;
  bench.Say("ate0\r");
  EXPECT_EQ(bench.Say("at" + std::string(1'000'000, 'x') + "\r"), "\r\nERROR\r\n");
  CommandLine line;
  std::string echo;
  for (int i = 0; i < 100'000; ++i) line.Take('\xfe', echo);
  EXPECT_EQ(echo.size(), CommandLine::kLimit);
  EXPECT_EQ(line.Take('\r', echo)->text.size(), CommandLine::kLimit);
}

TEST(Unit, BeginsTheTagStreamWithTheIdleScreenAndAllReadings) {
  Bench bench;
  bench.Say("ate0\r");
  EXPECT_EQ(
      bench.StartTags(),
      "\r\nOK\r\n\x1b[2J"
      "<tml><TextScreen></tml>\x1b[?25l"
      "\x1b[2;2H             CORVEX MARINE             "
      "\x1b[4;2HNetwork   Atlantic East                "
      "\x1b[5;2HBeam      SPOT BEAM 7                  "
      "\x1b[6;2HPosition  N 59 54.21  E 010 44.61      "
      "\x1b[7;2HCourse    214                          "
      "\x1b[8;2HSignal    52 dB/Hz   Unit 41 C         "
      "<tml><Sk>Menu|3|Mail\x7f"
      "box|6|Book|7|Call|5</tml><tml><Paint></tml>"
      "<tml><Date>12:00|2006.03.31|UTC</tml><tml><Sig>52</tml><tml><Temp>41</tml><tml><PsuTemp>38</tml>"
      "<tml><GpsPos>N 59 54.21  E 010 44.61</tml><tml><gpshead>HDG 214</tml><tml><Sim></tml><tml><none></tml>"
      "<tml><NoMail></tml><tml><Spotinfo>SPOT BEAM 7</tml><tml><MUBinfo>Master MUB on Master SDU</tml>"
      "<tml><Userinfo>Owner level</tml>");
}

TEST(Unit, WalksItsMenusByKeys) {
  Bench bench;
  bench.StartTags();
  const std::string idle = "<tml><TextScreen></tml>";
  const std::pair<std::string_view, std::string> walk[] = {
      {"\r", std::string(kMainMenu)},
      {" 4",
       "<tml><MenuScreen><Title>4 Setup<1>001Language|21<2>002Display|22<3>003Spot "
       "beam|23<4>004Compression|24"
       "<INDEXLINE>1</tml><tml><Paint></tml>"},
      {"2",
       "<tml><MenuScreen><Title>4.2 Display<1>001Contrast|22<2>002Light|25<3>003Tones|26<INDEXLINE>1</tml>"
       "<tml><Paint></tml>"},
      {kDown,
       "<tml><MenuScreen><Title>4.2 Display<1>001Contrast|22<2>002Light|25<3>003Tones|26<INDEXLINE>2</tml>"
       "<tml><Paint></tml>"},
      {"3",
       "<tml><MenuScreen><Title>4.2.3 Tones<1>001Low tone|26<2>002High tone|26<INDEXLINE>1</tml>"
       "<tml><Paint></tml>"},
      {"7", ""},
      {kEscape,
       "<tml><MenuScreen><Title>4.2 Display<1>001Contrast|22<2>002Light|25<3>003Tones|26<INDEXLINE>3</tml>"
       "<tml><Paint></tml>"},
  };
  for (const auto& [keys, expected] : walk) EXPECT_EQ(bench.Say(keys), expected) << keys;
  bench.Say(kEscape);
  bench.Say(kEscape);
  EXPECT_TRUE(bench.Say(kEscape).starts_with("<tml><CloseMenuScreen></tml><tml><TextScreen></tml>"));
  EXPECT_EQ(bench.Say(kEscape), "") << "nothing above the idle screen";
  EXPECT_TRUE(bench.Say(kRepaint).starts_with(idle));
  EXPECT_TRUE(Holds(bench.Say("9"), "<Title>9 Service<")) << "a digit on the idle screen is a short cut";
  EXPECT_TRUE(Holds(bench.Say("\x14"), idle)) << "the fifth soft key leads home";
  EXPECT_TRUE(Holds(bench.Say("\x09"), "<Title>3 Mail<")) << "the second soft key";
}

TEST(Unit, TellsNumbersOfOneAndTwoDigitsApart) {
  Bench bench;
  bench.StartTags();
  bench.Say("1");
  bench.Say("3");
  EXPECT_EQ(bench.Say("1", 0.05), "") << "might become 10 to 12";
  EXPECT_EQ(bench.Say("", 0.2), "<tml><MsgScreen>Calling|The other end is busy</tml>");
  EXPECT_TRUE(Holds(bench.Say(kEscape), "<INDEXLINE>1</tml>"));
  bench.Say(" 12");
  EXPECT_TRUE(Holds(bench.Say(kEscape), "<INDEXLINE>12</tml>"));
}

TEST(Unit, TellsTheClearKeyFromCursorKeys) {
  struct Case {
    const char* what;
    std::vector<std::string_view> pieces;
    std::string_view title;  // of the menu that is shown last
    std::string_view index;
  };
  const Case cases[] = {
      {"cursor down in one piece", {kDown}, "4 Setup", "2"},
      {"cursor down cut in three", {"\x1b", "[", "B"}, "4 Setup", "2"},
      {"down and up again", {"\x1b[B\x1b[B\x1b[A"}, "4 Setup", "2"},
      {"clear alone", {kEscape}, "Main menu", "4"},
      {"clear, then a repaint", {"\x1b\x12"}, "Main menu", "4"},
      {"clear, then cursor up", {"\x1b\x1b[A"}, "Main menu", "3"},
  };
  for (const Case& c : cases) {
    Bench bench;
    bench.StartTags();
    bench.Say("4");
    std::string shown;
    for (const std::string_view piece : c.pieces) shown += bench.Say(piece, 0.01);
    shown += bench.Say("", 0.1);
    const std::string last = shown.substr(shown.rfind("<MenuScreen>"));
    EXPECT_TRUE(last.starts_with("<MenuScreen><Title>" + std::string(c.title))) << c.what << ": " << last;
    EXPECT_TRUE(Holds(last, "<INDEXLINE>" + std::string(c.index) + "<")) << c.what << ": " << last;
  }
}

TEST(Unit, MovesTheCursorOfAChoiceAndRemembersWhatWasChosen) {
  Bench bench;
  bench.StartTags();
  bench.Say("4");
  const auto choice = [](int current) {
    return "<tml><Sk>Select|5||0||0|Back|4</tml><tml><ChoiceScreen><Title>4.3 Spot beam"
           "<1>Automatic<2>Global beam<3>Search<INDEXLINE>" +
           std::to_string(current) + "</tml><tml><Paint></tml>";
  };
  EXPECT_EQ(bench.Say("3"), choice(1));
  EXPECT_EQ(bench.Say(kDown), choice(2));
  EXPECT_EQ(bench.Say(kDown), choice(3));
  EXPECT_EQ(bench.Say(kDown), choice(3));
  EXPECT_EQ(bench.Say(kUp), choice(2));
  EXPECT_EQ(
      bench.Say("\r"),
      "<tml><Spotinfo>GLOBAL BEAM</tml><tml><CloseChoiceScreen></tml><tml><MsgScreen>Setting changed</tml>");
  EXPECT_TRUE(Holds(bench.Say("", 2.5), "<MenuScreen><Title>4 Setup<")) << "the message goes by itself";
  EXPECT_EQ(bench.Say("3"), choice(2));
  EXPECT_TRUE(Holds(bench.Say(kRepaint), "<tml><Spotinfo>GLOBAL BEAM</tml>"));
  EXPECT_TRUE(
      bench.Say(kEscape).starts_with("<tml><CloseChoiceScreen></tml><tml><MenuScreen><Title>4 Setup<"));
}

TEST(Unit, TakesWhatIsTypedIntoFields) {
  Bench bench;
  bench.StartTags();
  bench.Say("1");
  EXPECT_EQ(bench.Say("2"),
            "<tml><CloseMenuScreen></tml><tml><FieldScreen></tml>\x1b[?25l"
            "\x1b[2;2H\x1b[1m1.2 Add entry                          \x1b[0m"
            "\x1b[4;2H\x1b[7m > Name    [________________]          \x1b[0m"
            "\x1b[5;2H   Number  [________________]          "
            "<tml><Sk>OK|5|Up|8|Down|9|Back|4</tml><tml><Paint></tml>");
  EXPECT_EQ(bench.Say("Al<|>x\b"),
            "\x1b[4;2H > Name    [A_______________]          \x1b[H"
            "\x1b[4;2H > Name    [Al______________]          \x1b[H"
            "\x1b[4;2H > Name    [Alx_____________]          \x1b[H"
            "\x1b[4;2H > Name    [Al______________]          \x1b[H");
  EXPECT_TRUE(Holds(bench.Say(kDown), "\x1b[7m > Number  [________________]"));
  bench.Say("+4x7" + std::string(40, '1'));
  EXPECT_TRUE(Holds(bench.Say(kUp), "   Number  [+471111111111111]"));
  bench.Say("\r");
  EXPECT_EQ(bench.Say("\r"), "<tml><MsgScreen>Al|stored</tml>");
}

TEST(Unit, MovesATableUnderItsCursorLine) {
  Bench bench;
  bench.StartTags();
  bench.Say("1");
  const std::string first = bench.Say("1");
  EXPECT_TRUE(Holds(first, "\x1b[4;2H\x1b[7m > Agent, harbour"));
  EXPECT_TRUE(Holds(first, "\x1b[8;2H   Fleet office"));
  bench.Say(kDown);
  const std::string third = bench.Say(kDown);
  EXPECT_TRUE(third.starts_with("<tml><TableScreen></tml>"));
  EXPECT_TRUE(Holds(third, "\x1b[2;2H\x1b[1m   Agent, harbour") &&
              Holds(third, "\x1b[4;2H\x1b[7m > Chandler"));
  EXPECT_TRUE(Holds(bench.Say("\r"), "Chandler            00 2055 0103"));
}

TEST(Unit, TurnsTheFourPagesOfItsStatusTableByTwoSteps) {
  Bench bench;
  bench.StartTags();
  for (const auto* key : {"9", "8"}) bench.Say(key);
  std::string page = bench.Say("2");
  for (const auto* line : {" > Part number", " > Network", " > Unit", " > Position"}) {
    EXPECT_TRUE(Holds(page, "\x1b[4;2H\x1b[7m" + std::string(line))) << line;
    bench.Say(kDown);
    page = bench.Say(kDown);
  }
}

TEST(Unit, PrintsAndSwitchesOff) {
  Bench bench;
  bench.StartTags();
  for (const auto* key : {"9", "4", "1"}) bench.Say(key);
  EXPECT_TRUE(
      bench.Say("\x15").starts_with("<tml><StartPrint></tml><tml><Print>000CORVEX MARINE "
                                    "204417</tml><tml><Print>0002006.03.31 12:00 UTC</tml>"));
  EXPECT_TRUE(Holds(bench.out, "<tml><EndPrint></tml><tml><TextScreen></tml>"));
  for (int i = 0; i < 3; ++i) bench.Say(kEscape);
  EXPECT_EQ(bench.Say("8"), "<tml><Shutdown></tml>");
  EXPECT_FALSE(bench.unit.InTagMode());
  EXPECT_TRUE(Holds(bench.Say("at\r"), "OK"));
}

TEST(Unit, LeavesTheTagStreamAtCancelAndAtHangUp) {
  for (const bool byHangUp : {false, true}) {
    Bench bench({.tour = true}, 1);
    bench.StartTags();
    bench.Say("\x1b");  // half a key, and a message that would go by itself
    if (byHangUp) {
      bench.unit.LineDown();
    } else {
      bench.unit.Receive(kCancel);
    }
    EXPECT_EQ(bench.Say("", 20), "");
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("at\r"), "at\r\r\nOK\r\n");
  }
}

TEST(Unit, ShowsSignsOfLifeAndTracesBetweenPackets) {
  Bench bench({}, 1);
  bench.StartTags();
  std::string stream = bench.Say("", 100);
  std::size_t times = 0;
  for (std::size_t at = 0; (at = stream.find("<tml><Time>12:0", at)) != std::string::npos; ++at) ++times;
  EXPECT_EQ(times, 99U) << "one a second, but the date at the full minute";
  EXPECT_TRUE(Holds(stream, "<tml><Date>12:01|2006.03.31|UTC</tml>"));
  EXPECT_TRUE(Holds(stream, "<tml><NewMail></tml>"));
  EXPECT_TRUE(Holds(stream, "\x1b[8;2HSignal    5")) << "the idle screen follows its readings";
  const std::string record = "<Trace>0036rx 51 dB/Hz, unit 41 C, supply 38 C\r\n";
  const std::size_t trace = stream.find("<Trace>");
  ASSERT_NE(trace, std::string::npos);
  const std::string_view before = std::string_view(stream).substr(0, trace);
  EXPECT_TRUE(before.ends_with("</tml>") || before.ends_with("\x1b[H"));
  EXPECT_EQ(stream.substr(trace, record.size()).size(), record.size());
  EXPECT_EQ(stream.substr(trace, 11), "<Trace>0036");
  EXPECT_EQ(stream.substr(trace + 11 + 35, 2), "\r\n");

  EXPECT_FALSE(Holds(bench.Say("\x04", 100), "<Trace>"));
  EXPECT_TRUE(Holds(bench.Say("\x81", 10), "<tml><Channel>1,su tick"));
}

TEST(Unit, TourPlaysUntilAKeyComes) {
  Bench bench({.tour = true});
  bench.StartTags();
  bench.Say("\x1b\x12\x1b", 0.3);  // as a session is opened by the PC
  const std::string twice = bench.Say("", 70);
  for (const auto* part : {"<Title>Main menu<", "<ChoiceScreen><Title>4.1 Language",
                           "<MsgScreen>Language|Deutsch", "<TableScreen>", "Chandler"}) {
    EXPECT_TRUE(Holds(twice, part)) << part;
  }
  EXPECT_LT(twice.find("Language|Deutsch"), twice.rfind("Language|Norsk")) << "it begins again";
  bench.Say("7");
  EXPECT_EQ(bench.Say("", 60), "");
}

TEST(Unit, IsReachedThroughAFakePort) {
  VirtualLoop loop;
  test::FakeSocket socket(loop);
  test::UnitLink link(loop, socket, {}, {.hangUpAfter = 30});
  socket.Connect("unit", 3000);
  loop.Run(0.1);
  socket.SendData("ate0\r");
  loop.Run(0.1);
  EXPECT_EQ(socket.GetData(), "ate0\r\r\nOK\r\n");
  socket.SendData("AT+WQUILSTARTTMLB\r\n");
  EXPECT_EQ(socket.GetData().size(), 30U - 11U);
  loop.Run(0.1);
  EXPECT_EQ(socket.GetState(), SocketControl::kPeerClosing);
  EXPECT_FALSE(link.unit.InTagMode());
}

TEST(Screens, LeadSomewhereAndFitTheWireAndTheDisplay) {
  std::set<std::string_view> names;
  for (const Screen& screen : Screens()) {
    SCOPED_TRACE(screen.name);
    EXPECT_TRUE(names.insert(screen.name).second);
    std::vector<std::string_view> targets;
    for (const Item& item : screen.items) {
      targets.push_back(item.target);
      EXPECT_TRUE(item.icon >= 1 && item.icon <= 63 && item.number >= 1 && item.number <= 999);
    }
    for (const SoftKey& key : screen.keys) {
      if (!key.text.empty()) targets.push_back(key.target);
    }
    const bool needsTarget =
        screen.kind == Kind::Choice || screen.kind == Kind::Field || screen.kind == Kind::Table;
    if (needsTarget || !screen.target.empty()) targets.push_back(screen.target);
    for (const std::string_view target : targets) {
      const bool step =
          target == kBack || target == kSelect || target == simulation::kUp || target == simulation::kDown;
      EXPECT_TRUE(step || FindScreen(target) != nullptr) << target;
    }
    EXPECT_LE(screen.items.size(), 40U);
    EXPECT_LE(screen.fields.size(), 5U);
    for (const std::string_view row : screen.rows) EXPECT_LE(row.size(), 48U);
    const bool menu = screen.kind == Kind::Menu || screen.kind == Kind::Choice;
    EXPECT_EQ(screen.items.empty() && screen.options.empty(), !menu);
  }
}

TEST(Wire, TraceRecordsHaveALengthThatReadersAccept) {
  EXPECT_EQ(TraceRecord("call setup"), "<Trace>0011call setup\r\n");
  EXPECT_EQ(TraceRecord(""), "<Trace>0003  \r\n");
  EXPECT_EQ(TraceRecord(std::string(500, 'x')), "<Trace>0200" + std::string(199, 'x') + "\r\n");
}

}  // namespace
}  // namespace corvex::simulation
