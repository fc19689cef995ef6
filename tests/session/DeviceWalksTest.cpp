#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "devices/ConfigFile.h"
#include "session/DeviceUser.h"

// Visits to the device manager that go wrong: at each command something else happens. After each of them the
// terminal's old configuration is in the terminal or in a backup, the device manager closes within a second,
// and the session comes back. CORVEX_SEEDS sets the number of random visits, CORVEX_SEED runs one seed alone.

namespace corvex {
namespace {

using simulation::Faults;
using test::DeviceUser;
using test::Route;
using test::Routed;

constexpr double kFirstSession = 3;  // seconds until the unit's screen is visible

/// One visit, and what is expected after it.
class Visit {
 public:
  Visit(Route route, DeviceUser::Plan plan, simulation::UnitOptions options = {}, double timeOfDay = 36000)
      : options_(std::move(options)), r(route, {.unit = options_}, timeOfDay), user(r, std::move(plan)) {
    r.p.folder.Write("device.cfg", ConfigText({"1 0 0 01 0 0 1 0 255 255 0 0 1 ffffff unset 0",
                                               "2 0 1 30 0 0 1 255 255 255 0 0 1 ffffff unset 0"}));
    user.fileToLoad = (r.p.folder.Path() / "device.cfg").string();
    r.p.Start(kFirstSession);
    EXPECT_EQ(r.UnitShows(), "idle");
    before_ = r.unit()->Config().Entries();
    user.heard.clear();
    user.sends.clear();
  }

  void Run() {
    user.Visit();
    user.ExpectNothingAfterTheEnd();
  }

  /// `garbled`: the line has changed bytes, so that what was read is not what the unit has sent.
  void ExpectGoodEnd(bool garbled = false) {
    EXPECT_TRUE(garbled || OldConfigurationExists());
    const bool closing = r.term.main().mode == ModemMode::Closing;
    r.setFaults({});
    r.p.comPort.available = true;
    r.p.loop.Run(60);
    EXPECT_EQ(r.p.loop.Ended(), closing);
    if (closing) return;
    // The user has opened the device manager from another mode. The program then waits for the user.
    if (r.term.main().mode != ModemMode::DeviceManager) test::ExpectSessionOrWait(r);
    r.p.Do([this] { r.term.mnuTerminal.click(); });
    r.p.loop.Run(20);
    EXPECT_EQ(r.term.main().mode, ModemMode::Terminal);
    EXPECT_EQ(r.UnitShows(), "idle");
    r.p.Do([this] { r.term.mnuExit.click(); });
    EXPECT_TRUE(r.p.loop.Ended());
    user.ExpectNothingAfterTheEnd();
  }

 private:
  bool OldConfigurationExists() const {
    if (r.unit()->Config().Entries() == before_) return true;
    const std::string folder = r.p.settings.InAppFolder("backups");
    if (!std::filesystem::exists(folder)) return false;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      if (ReadConfigFile(file.path().string()) == before_) return true;
    }
    return false;
  }

  simulation::UnitOptions options_;

 public:
  Routed r;
  DeviceUser user;

 private:
  std::vector<std::string> before_;
};

struct Event {
  const char* name;
  std::function<void(Visit&)> happens;
};

void ClickEverything(Visit& v) {
  if (v.user.BoxOpen()) return;
  if (auto* manager = v.r.p.windows.Shown<frmDev>()) {
    for (const int button : {1, 3}) manager->Toolbar1.buttonClick(button);
    for (MenuItem* entry : {&manager->mnuLoad, &manager->mnuSave, &manager->mnuFactory, &manager->mnuPrint,
                            &manager->mnuPopAdd, &manager->mnuPopEdit, &manager->mnuPopRemove,
                            &manager->telChange, &manager->EditHs, &manager->HsIdentify, &manager->tstBuzzer})
      entry->click();
    for (Button& edit : manager->cmdPortEdit) edit.click();
  }
  v.r.term.cmdTop[1].click();
}

void TypeKeys(Visit& v) {
  auto* const manager = v.r.p.windows.Shown<frmDev>();
  if (manager == nullptr || v.user.BoxOpen()) return;
  for (const int code : {8, 45, 46, 27, 13}) {  // Backspace, Insert, Delete, Esc, Enter
    KeyEvent key{.keyCode = code};
    manager->TakeKey(key);
  }
}

const std::vector<Event>& Events() {
  static const std::vector<Event> kEvents{
      {"the user clicks everything", ClickEverything},
      {"the user types", TypeKeys},
      {"the line drops",
       [](Visit& v) {
         v.r.p.loop.After(std::chrono::seconds(4), [&v] { v.r.p.comPort.available = true; });
         v.r.hangUp();
       }},
      {"the window is closed", [](Visit& v) { v.user.CloseManager(); }},
      {"the window is closed after three seconds of silence",
       [](Visit& v) {
         v.r.setFaults({.silent = true});
         v.r.p.loop.After(std::chrono::seconds(3), [&v] { v.user.CloseManager(); });
       }},
      {"the program is closed",
       [](Visit& v) {
         if (!v.user.BoxOpen()) v.r.term.mnuExit.click();
       }},
      {"a box is open", [](Visit& v) { v.r.p.dialogs.MessageBox("box"); }},
      {"boxes stay open",
       [](Visit& v) {
         v.user.boxTime = 8;
         v.r.p.loop.After(std::chrono::seconds(6), [&v] { v.user.CloseManager(); });
       }},
      {"answers are late", [](Visit& v) { v.r.setFaults({.late = std::chrono::milliseconds(700)}); }},
      {"answers come in pieces", [](Visit& v) { v.r.setFaults({.cut = true}); }},
      {"answers are garbled", [](Visit& v) { v.r.setFaults({.garble = 0.02, .drop = 0.01}); }},
  };
  return kEvents;
}

const DeviceUser::Plan kPlan{"add", "edit", "remove", "handset", "port", "buzzer", "save", "load"};

/// A small unit, so that a visit is short.
simulation::UnitOptions Small() {
  return {.tick = std::chrono::seconds(10), .trace = false, .config = {.entries = 6}};
}

struct DeviceWalks : ::testing::TestWithParam<Route> {
  /// The sends of a visit in which nothing goes wrong.
  std::vector<std::pair<double, std::string>> Undisturbed() const {
    Visit v(GetParam(), kPlan, Small());
    v.Run();
    EXPECT_TRUE(v.user.plan.empty());
    EXPECT_EQ(v.r.unit()->Config().Entries().size(), 2U) << "the file has not been loaded";
    const auto sends = v.user.sends;
    v.ExpectGoodEnd();
    return sends;
  }
};

TEST_P(DeviceWalks, AnyEventAtAnyCommandEndsWell) {
  const auto sends = Undisturbed();
  for (std::size_t at = 1; at <= sends.size() && !HasFailure(); ++at) {
    for (const Event& event : Events()) {
      SCOPED_TRACE(std::string(event.name) + " after send " + std::to_string(at) + " " +
                   testing::PrintToString(sends[at - 1].second));
      Visit v(GetParam(), kPlan, Small());
      v.user.onSend = [&] {
        if (v.user.sends.size() == at) v.r.p.loop.Post([&] { event.happens(v); });
      };
      v.Run();
      v.ExpectGoodEnd(std::string_view(event.name).ends_with("garbled"));
      if (HasFailure()) return;
    }
  }
}

TEST_P(DeviceWalks, MidnightPassesAtAnyCommand) {
  const auto sends = Undisturbed();
  for (const auto& [time, bytes] : sends) {
    SCOPED_TRACE(testing::PrintToString(bytes) + " at " + std::to_string(time));
    Visit v(GetParam(), kPlan, Small(), std::fmod(2 * 86400 - 0.02 - time, 86400.0));
    v.Run();
    EXPECT_TRUE(v.user.plan.empty());
    EXPECT_EQ(v.r.unit()->Config().Entries().size(), 2U) << "the file has not been loaded";
    v.ExpectGoodEnd();
    if (HasFailure()) return;
  }
}

TEST_P(DeviceWalks, AnyCommandIsRefusedOrItsAnswerIsLost) {
  std::map<std::string, int> uses;
  for (const auto& [time, bytes] : Undisturbed()) {
    const std::string word = bytes.substr(0, bytes.find_first_of(" \r\n"));
    if (!simulation::ConfigShell::Knows(word)) continue;
    const simulation::CommandFault fault{word, ++uses[word]};
    for (const bool refused : {true, false}) {
      SCOPED_TRACE(word + ", use " + std::to_string(fault.use) + (refused ? ", refused" : ", not answered"));
      simulation::UnitOptions options = Small();
      (refused ? options.config.refused : options.config.muted).push_back(fault);
      Visit v(GetParam(), kPlan, options);
      v.Run();
      v.ExpectGoodEnd();
      if (HasFailure()) return;
    }
  }
}

TEST_P(DeviceWalks, TheLineHangsUpAfterAnyByte) {
  for (std::uint64_t bytes = 1; bytes < 3000; bytes += bytes < 300 ? 1 : 23) {
    SCOPED_TRACE("hung up after " + std::to_string(bytes));
    Visit v(GetParam(), kPlan, Small());
    v.r.setFaults({.hangUpAfter = bytes});
    v.user.patience = 40;
    v.Run();
    v.ExpectGoodEnd();
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(All, DeviceWalks, ::testing::Values(Route::Serial, Route::Lan),
                         [](const auto& test) { return test::RouteName(test.param); });

/// A visit with its own plan, unit and faults, during which events happen at random.
void RandomVisit(std::uint32_t seed) {
  std::mt19937 random(seed);
  const auto chance = [&random](std::uint32_t of) { return random() % of == 0; };
  static const std::vector<std::string> kThings{"add",    "edit",   "remove", "port",    "handset",
                                                "serial", "ring",   "save",   "refresh", "load",
                                                "print",  "buzzer", "factory"};
  DeviceUser::Plan plan;
  for (std::uint32_t i = 0; i < 2 + random() % 6; ++i) plan.push_back(kThings[random() % kThings.size()]);
  simulation::UnitOptions options{.tick = std::chrono::seconds(5), .trace = chance(2)};
  options.config = {.entries = static_cast<int>(random() % 20), .owner = chance(3)};
  if (chance(3)) options.config.delay = std::chrono::milliseconds(random() % 900);
  constexpr const char* kCommands[] = {"gfd",  "gtlevel", "gadd", "trypwd", "lckd", "updd", "uphs",
                                       "upta", "rmdd",    "ladd", "cadd",   "badd", "padd"};
  const auto fault = [&]() -> simulation::CommandFault {
    return {kCommands[random() % std::size(kCommands)], static_cast<int>(random() % 6)};
  };
  if (chance(3)) options.config.refused.push_back(fault());
  if (chance(3)) options.config.muted.push_back(fault());

  Visit v(chance(2) ? Route::Serial : Route::Lan, plan, options, chance(3) ? 86395 - random() % 60 : 36000);
  const bool garbled = chance(4);
  bool visiting = true;
  std::function<void()> happen = [&] {
    if (!visiting) return;
    v.r.p.loop.After(std::chrono::milliseconds(2000 + random() % 20000), happen);
    Events()[random() % (Events().size() - (garbled ? 0 : 1))].happens(v);
  };
  v.r.p.loop.After(std::chrono::milliseconds(random() % 20000), happen);
  v.Run();
  visiting = false;
  v.ExpectGoodEnd(garbled);
}

TEST(DeviceRandomWalks, EndWell) {
  test::RunSeeds(100, RandomVisit);
}

// 250 entries arrive at the speed of the line, in pieces of one size in each read.
TEST(DeviceReads, TakeALongReplyInPiecesOfAnySize) {
  test::Session s;
  const auto entries = simulation::DeviceDatabase(250, false).Entries();
  std::string reply = "<SL>250";
  for (const std::string& entry : entries) reply.append("<dd>").append(entry).append("|");
  reply += "<EOL>";
  std::size_t size = 1;
  double began = 0;
  std::vector<std::size_t> entriesRead;
  for (const auto& [command, answer] : test::ConfiguredUnit()) s.modem.Answer(command, answer);
  s.modem.Answer("gadd\r\n", "");
  s.p.comPort.onSent = [&s, &reply, &size, &began, answer = s.p.comPort.onSent](std::string_view bytes) {
    answer(bytes);
    if (!bytes.ends_with("gadd\r\n")) return;
    began = s.p.loop.SecondsSinceMidnight();
    constexpr double kBytesPerSecond = 11520;
    const auto arrive = [&s](const std::string& piece, double after) {
      s.p.loop.After(std::chrono::duration_cast<EventLoop::Time>(std::chrono::duration<double>(after)),
                     [&s, piece] { s.p.comPort.Arrive(piece); });
    };
    // The last bytes come later, so that the mark of the end is read in two parts.
    const std::size_t late = size % 6;
    const std::size_t early = reply.size() - late;
    for (std::size_t at = 0; at < early; at += size) {
      const std::string piece = reply.substr(at, std::min(size, early - at));
      arrive(piece, static_cast<double>(at + piece.size()) / kBytesPerSecond);
    }
    arrive(reply.substr(early), static_cast<double>(reply.size()) / kBytesPerSecond + 0.5);
  };
  std::function<void()> next = [&] {
    frmDev& window = *s.p.windows.Shown<frmDev>();
    if (!window.Toolbar1.Enabled(3) || window.pointer == Pointer::Hourglass) {
      s.p.loop.After(std::chrono::milliseconds(200), next);
      return;
    }
    std::size_t shown = 0;
    for (const TreeView* view : {&window.treedev, &window.treePOTS, &window.treeQuil}) {
      for (int node = 0; node < view->tree().Count(); ++node)
        shown += view->tree()[node].tag.empty() ? 0U : 1U;
    }
    entriesRead.push_back(shown);
    EXPECT_LT(s.p.loop.SecondsSinceMidnight() - began, 4) << "pieces of " << size;
    size += size < 40 ? 1 : size * 2 / 3;
    if (size > reply.size() * 2) return window.queryUnload();
    s.p.loop.After(std::chrono::milliseconds(200), next);
    window.Toolbar1.buttonClick(3);
  };
  s.p.loop.After(std::chrono::seconds(5), next);
  s.p.Do([&s] { s.term.cmdTop[1].click(); });
  EXPECT_GT(entriesRead.size(), 45U);
  EXPECT_GT(entriesRead.front(), 240U);
  EXPECT_EQ(entriesRead, std::vector<std::size_t>(entriesRead.size(), entriesRead.front()));
}

}  // namespace
}  // namespace corvex
