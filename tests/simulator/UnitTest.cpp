#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "host/Arguments.h"
#include "support/Recorded.h"
#include "support/UnitLink.h"
#include "support/VirtualLoop.h"
#include "unit/ErbFront.h"
#include "unit/Unit.h"
#include "unit/WireLog.h"

// The simulated units alone. tests/data/routes holds what they say in whole sessions.

namespace corvex::simulation {
namespace {

/// A unit without a program.
template <typename FarSide>
struct Bench {
  explicit Bench(typename FarSide::Options options)
      : unit(loop, std::move(options), [this](std::string_view bytes) { out += bytes; }) {}
  /// Sends bytes to the unit and returns what it answers within the given time.
  std::string Say(std::string_view bytes, double seconds = 0.1) {
    out.clear();
    unit.Receive(bytes);
    loop.Run(seconds);
    return out;
  }
  /// Runs a conversation of tests/data/unit. The README there describes them.
  void Converse(const std::filesystem::path& path) {
    SCOPED_TRACE(path);
    const std::string text = test::ReadFile(path);
    const auto log = ParseWireLog(text);
    const auto seconds = [this] { return std::chrono::duration<double>(loop.Now()).count(); };
    const double began = seconds();
    out.clear();
    std::string expected;
    for (const WireEvent& event : std::get<std::vector<WireEvent>>(log)) {
      loop.Run(began + event.at - seconds());
      if (event.kind == WireEvent::Kind::FromModem) {
        expected += event.bytes;
        continue;
      }
      EXPECT_EQ(out, expected) << "up to " << event.at;
      out.clear();
      expected.clear();
      if (event.at > 0 || std::is_same_v<FarSide, ErbFront>) {
        if (event.kind == WireEvent::Kind::Open) unit.LineUp();
        if (event.kind == WireEvent::Kind::Close) unit.LineDown();
      }
      unit.Receive(event.bytes);
    }
    EXPECT_EQ(out, expected) << "at the end";
  }
  test::VirtualLoop loop;
  std::string out;
  FarSide unit;
};

/// By default the unit does not tick during a test.
UnitOptions AtNoon(EventLoop::Time tick = std::chrono::hours(1)) {
  return {.startTime = 1143806400, .tick = tick};
}
constexpr const char* kStartTags = "AT+WQUILSTARTTMLB\r\n";

TEST(Conversations, AreAsRecorded) {
  for (const std::string folder : {"modem", "tags", "erb"}) {
    for (const auto& file : std::filesystem::directory_iterator(CORVEX_TEST_DATA "/unit/" + folder)) {
      if (folder == "erb") {
        Bench<ErbFront>({.mubs = {MubState::Free, MubState::Free, MubState::InUse, MubState::Broken}})
            .Converse(file);
      } else {
        Bench<Unit> bench(AtNoon());
        if (folder == "tags") bench.Say(kStartTags);
        bench.Converse(file);
      }
    }
  }
}

TEST(Unit, LeavesTheTagStreamAtCancelAndAtHangUp) {
  for (const bool byHangUp : {false, true}) {
    Bench<Unit> bench(AtNoon(std::chrono::seconds(1)));
    bench.Say(kStartTags);
    EXPECT_NE(bench.Say("\x1b", 3).find("<tml><Time>12:0"), std::string::npos);
    byHangUp ? bench.unit.LineDown() : bench.unit.Receive("\x18");
    EXPECT_EQ(bench.Say("", 20), "");
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("at\r"), "at\r\r\nOK\r\n");
  }
}

TEST(Unit, PrintsALongLog) {
  Bench<Unit> bench(AtNoon());
  bench.Say(kStartTags);
  const std::string job = bench.Say("944\x15");
  for (const char* row :
       {"<Print>0001  frames", "<Print>000200  frames 2400  errors 0  52 dB/Hz\r\n</tml><tml><EndPrint>"}) {
    EXPECT_NE(job.find(row), std::string::npos) << row;
  }
}

const std::string kConfig = "at+wquilconfig\r\n\r\n";
/// An update of an ISDN device, as the program writes it.
std::string Update(const std::string& id, const std::string& msn) {
  return "updd  " + id + "  0  0 " + msn + "  0 0 1  255  255  255 0 0 1 FFFFFFFF EDITED 0 0 0 \r\n";
}
std::string Device(const std::string& id, const std::string& msn) {
  return id + " 0 0 " + msn + " 0 0 1 255 255 255 0 0 1 FFFFFFFF EDITED 0";
}

TEST(UnitConfig, StoresChangesAtOnceAndKeepsThemOverARestart) {
  Bench<Unit> bench({.config = {.entries = 250, .owner = true}, .restartTime = std::chrono::seconds(3)});
  int drops = 0;
  bench.unit.onRestart = [&] { ++drops; };
  bench.Say(kConfig);
  const auto before = bench.unit.Config().Entries();
  EXPECT_EQ(before.size(), 250U);
  std::string list = "<SL>250";
  for (const std::string& entry : before) list += "<dd>" + entry + "|";
  EXPECT_EQ(bench.Say("gadd\r\n"), list + "<EOL>");

  EXPECT_EQ(bench.Say("ladd\r\ncadd\r\n" + Update("7", "30") + Update("-1", "x")),
            "<dduo><dduo><dduo><dduo>");
  EXPECT_EQ(bench.Say("AT+WQUILRESET\r\ngfd\r\n", 2.9), "");
  EXPECT_EQ(bench.Say("at\r\n"), "");
  EXPECT_EQ(bench.Say("at\r\n"), "at\r\r\nOK\r\n");
  EXPECT_EQ(bench.unit.Restarts(), 1);
  EXPECT_EQ(drops, 1);
  EXPECT_FALSE(bench.unit.Config().OwnerLevel());
  EXPECT_EQ(bench.unit.Config().Entries(), (std::vector{Device("-1", "x"), Device("7", "30")}));
  bench.Say(kConfig);
  EXPECT_EQ(bench.Say("trypwd owner\r\ncadd\r\n"), "PWDOK<ddUF>") << "the lock has ended";
}

TEST(UnitConfig, ReplacesAPortAndAHandsetWhoseIdChanges) {
  Bench<Unit> bench({.config = {.owner = true}});
  bench.Say(kConfig);
  EXPECT_EQ(bench.Say("upta  99  0  2 01  0 0 1  0  255  0 0 0 1 FFFFFFFF EDITED1\r\n"
                      "uphs  98  0  1 31  0 0 1  255  1  1 1 0 1 ffffff MESS 0\r\n"
                      "uphs  5  0  0 20  0 0 0  255  1  0 1 0 1 ffffff MESS 0\r\n"),
            "<dduo><dduo><dduo>");
  const auto entries = bench.unit.Config().Entries();
  ASSERT_EQ(entries.size(), 8U);
  EXPECT_EQ(entries[3], "5 0 0 20 0 0 0 255 1 0 1 0 1 ffffff MESS 0");
  EXPECT_EQ(entries[6], "98 0 1 31 0 0 1 255 1 1 1 0 1 ffffff MESS 0");
  EXPECT_EQ(entries[7], "99 0 2 01 0 0 1 0 255 0 0 0 1 FFFFFFFF EDITED 1");
}

TEST(UnitConfig, ARestartClosesASocketAndSilencesASerialLine) {
  test::VirtualLoop loop;
  test::FakeSocket socket(loop);
  test::FakeSerial serial(loop);
  test::UnitLink overLan(loop, socket);
  test::UnitLink overSerial(loop, serial);
  socket.Connect("unit", 1);
  serial.Open();
  loop.Run(0.1);
  socket.SendData("at+wquilreset\r\n");
  serial.Output("at+wquilreset\r\n");
  loop.Run(0.1);
  EXPECT_EQ(socket.GetState(), SocketControl::kPeerClosing);
  EXPECT_TRUE(serial.PortOpen());
  serial.Input();
  serial.Output("at\r\n");
  loop.Run(0.1);
  EXPECT_EQ(serial.Input(), "");
}

TEST(UnitConfig, RefusesAndMutesTheNthUse) {
  Bench<Unit> bench({.config = {.owner = true,
                                .refused = {{"updd", 2}, {"gfd"}},
                                .muted = {{"updd", 3}, {"updd", 4}, {"uphs"}, {"ladd", 1}},
                                .delay = std::chrono::seconds(1)}});
  EXPECT_EQ(bench.Say("ate0\r" + kConfig, 0.9), "ate0\r\r\nOK\r\n");
  EXPECT_EQ(bench.Say("", 0.2), "<CONFIG ACTIVE>");
  const std::string handset = "uphs 5 0 0 20 0 0 0 255 1 0 1 0 1 ffffff MESS 0\r\n";
  const struct {
    std::string text;
    const char* answer;
  } kSteps[] = {
      {"gfd\r\ngfd\r\n", "<ddUF><ddUF>"},
      {"ladd\r\n\r\n", ""},
      {"ladd\r\n", "<dduo>"},
      {Update("50", "30"), "<dduo>"},
      {Update("51", "31"), "<ddUF>"},
      {Update("52", "32"), ""},
      {"\r\n", "<dduo>"},
      {Update("x", "33"), ""},
      {"\r\n", "<ddUF>"},
      {handset + "\r\n", ""},
      {"quit\r\n\r\n", "\r\nOK\r\n"},
  };
  for (const auto& [text, answer] : kSteps) EXPECT_EQ(bench.Say(text, 1.1), answer) << text;
  const ConfigShell& config = bench.unit.Config();
  EXPECT_EQ(config.Uses("updd"), 4);
  EXPECT_EQ(config.Entries().size(), 10U) << "the muted update was executed, the refused one was not";
  EXPECT_NE(config.Entries()[4].find("MESS"), std::string::npos);
  bench.Say(kConfig);
  EXPECT_EQ(bench.Say("gtlevel\r\n\x18", 5), "") << "cancel drops the waiting answer";
}

TEST(UnitConfig, RingsAndBuzzesOnlyWhatCan) {
  Bench<Unit> bench({});
  bench.Say(kConfig);
  const auto say = [&](const char* text) {
    const std::string answer = bench.Say(text);
    const ConfigShell& config = bench.unit.Config();
    return answer + ' ' + std::to_string(config.Ringing().value_or(0)) + ' ' +
           std::to_string(config.Buzzing().value_or(0));
  };
  EXPECT_EQ(say("tsths  1\r\n"), "ERROR 0 0");
  EXPECT_EQ(say("tsths  6\r\n"), "OK 6 0");
  EXPECT_EQ(say("tstDistress  7\r\n"), "ERROR 6 0");
  EXPECT_EQ(say("tstDistress  5\r\n"), "OK 6 5");
  EXPECT_EQ(say("tstDistOff  0\r\n"), "OK 6 0");
}

TEST(Simulator, ReadsTheOptionsOfTheConfiguration) {
  using Words = std::vector<std::string>;
  const auto parse = [](Words words, std::string& error) {
    words.insert(words.begin(), {"--tcp", "0"});
    return host::ParseArguments(words, error);
  };
  std::string error;
  const auto unit =
      parse({"--entries", "100000", "--owner", "--owner-password", "a b", "--uf", "updd:17", "--uf", "lckd",
             "--mute", "at+wquilconfig:1", "--config-delay", "0.5", "--restart", "0"},
            error)
          .unit;
  EXPECT_EQ(error, "");
  EXPECT_TRUE(unit.config.entries == 100000 && unit.config.owner && unit.config.password == "a b");
  ASSERT_EQ(unit.config.refused.size(), 2U);
  EXPECT_TRUE(unit.config.refused[0].command == "updd" && unit.config.refused[0].use == 17);
  EXPECT_TRUE(unit.config.refused[1].command == "lckd" && unit.config.refused[1].use == 0);
  EXPECT_EQ(unit.config.muted.size(), 1U);
  EXPECT_TRUE(unit.config.delay == std::chrono::milliseconds(500) && unit.restartTime.count() == 0);
  for (const Words& words : {Words{"--entries", "-1"},
                             {"--entries", "100001"},
                             {"--uf", "upd"},
                             {"--uf", ""},
                             {"--uf", "updd:"},
                             {"--uf", "updd:0"},
                             {"--mute", "gadd:x"},
                             {"--mute"},
                             {"--restart", "-1"},
                             {"--config-delay", "s"}}) {
    error.clear();
    parse(words, error);
    EXPECT_NE(error, "") << words.back();
  }
}

TEST(ErbFront, CanBeSlowAndCanLeaveAMubInUse) {
  Bench<ErbFront> bench({.lingers = true, .answerTime = std::chrono::milliseconds(300)});
  for (const char* answer : {"connected to modem 1\r\n", "modem 1 already in use\r\nERB> "}) {
    bench.unit.LineUp();
    EXPECT_EQ(bench.Say("root\r\nzzz\r\n"), "root\r");
    EXPECT_EQ(bench.Say("", 1), "\r\nPassword: ") << "the text that came too early is lost";
    bench.Say("zzz\r\n", 1);
    EXPECT_TRUE(bench.Say("modem 1\r\n", 1).ends_with(answer));
    bench.unit.LineDown();
  }
}

TEST(Screens, LeadToScreensAndFitTheWireAndTheDisplay) {
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
      const bool step = target == kBack || target == kSelect || target == kPrint ||
                        target == simulation::kUp || target == simulation::kDown;
      EXPECT_TRUE(step || FindScreen(target) != nullptr) << target;
    }
    for (const std::string_view row : screen.rows) EXPECT_LE(row.size(), 48U);
  }
}

}  // namespace
}  // namespace corvex::simulation
