#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <random>
#include <utility>

#include "session/Route.h"

// A user works on a bad line. Each seed makes one run with its own route, ERB unit and phases in which the
// line drops, garbles, delays or cuts bytes, or hangs up. CORVEX_SEEDS sets the number of runs, CORVEX_SEED
// runs one seed alone.

namespace corvex {
namespace {

using simulation::Faults;
using simulation::MubState;
using test::Routed;
using test::Step;

/// Whether a send is not a key of the user: cancel, repaint, a line of a dialogue or the end of a session.
bool IsProgramsOwn(std::string_view bytes) {
  return bytes == "\x18" || bytes == "\x12" || bytes == "\x1b\x12\x1b" || bytes.ends_with("\n") ||
         bytes == "AT+ERB_TRANSPARENT_MODE";
}

class FaultWalk {
 public:
  explicit FaultWalk(std::uint32_t seed)
      : random_(seed), r_(test::kRoutes[seed % std::size(test::kRoutes)], Options(seed)) {
    r_.onHeard = [this](std::string_view bytes) {
      if (!IsProgramsOwn(bytes)) Hear(bytes);
    };
  }

  void Run() {
    Spoil();
    r_.p.Start(0.1);
    for (int phase = 0; phase < 4; ++phase) {
      Work(20);
      Spoil();
    }
    Work(20);
    ComesBack();
  }

 private:
  bool Chance(std::uint32_t of) { return random_() % of == 0; }
  double Share(double most) { return Chance(2) ? most * (random_() % 1000) / 1000 : 0; }

  simulation::ErbOptions Options(std::uint32_t seed) {
    simulation::ErbOptions options{.lingers = Chance(2)};
    if (Chance(3)) options.mubs[0] = MubState::InUse;
    if (Chance(3)) options.answerTime = std::chrono::milliseconds(random_() % 500);
    options.unit.seed = seed;
    return options;
  }

  /// Spoils the line for 5 to 24 seconds. The time is limited because the program never stops opening a
  /// socket that its peer closes at once (intended).
  void Spoil() {
    r_.p.loop.After(std::chrono::seconds(5 + random_() % 20), [this] { r_.setFaults({}); });
    Faults faults{.seed = static_cast<std::uint32_t>(random_()), .garble = Share(0.01), .drop = Share(0.01)};
    if (Chance(3)) faults.late = std::chrono::milliseconds(random_() % 1500);
    faults.cut = Chance(2);
    if (Chance(3)) faults.hangUpAfter = 1 + random_() % 3000;
    faults.silent = Chance(20);
    r_.setFaults(faults);
  }

  /// For so many seconds the user continues the walk wherever one of its screens is visible. At random the
  /// user presses Clear, connects again, chooses another MUB or plugs in a lost adapter.
  void Work(double seconds) {
    const double until = r_.Now() + seconds;
    while (r_.Now() < until) {
      r_.p.loop.Run(0.3 + 0.1 * (random_() % 5));
      if (r_.Now() < cleared_ + 0.3) continue;  // the user needs to see the result
      if (Chance(4)) r_.p.comPort.available = true;
      if (Chance(60)) {
        r_.p.Do([this] { r_.term.cmdTop[0].click(); });
      } else if (r_.HasErb() && Chance(60)) {
        r_.p.Do([this] { (Chance(2) ? r_.term.mnuSlaveONMaster : r_.term.mnuMasterONSlave).click(); });
      } else if (Chance(40)) {
        Clear();
      } else if (const Step* step = StepInSight(); step != nullptr && step->act) {
        // The user may change their mind before the step is done.
        if (Chance(5)) r_.p.loop.After(std::chrono::milliseconds(random_() % 600), [this] { Clear(); });
        Do(step->AllKeys(r_.term), step->act);
      }
    }
  }

  /// A step of the walk whose screen is visible here and on the unit. If a fault has left an old screen here,
  /// the user cannot know where a key will go.
  const Step* StepInSight() {
    std::vector<const Step*> steps;
    for (const Step& step : test::Walk()) {
      if (test::Sees(r_.term, step) && r_.UnitShows() == step.screen) steps.push_back(&step);
    }
    return steps.empty() ? nullptr : steps[random_() % steps.size()];
  }

  void Do(test::Keys keys, const std::function<void(frmTerm&)>& act) {
    due_.assign(keys.begin(), keys.end());
    screen_ = r_.UnitShows();
    r_.p.Do([&] { act(r_.term); });
    r_.p.comPort.LetLeave();
    due_.clear();
  }

  /// Presses the clear key. It ends a walk through a list.
  void Clear() {
    const auto due = std::exchange(due_, {"\x1b"});
    const std::string screen = std::exchange(screen_, std::string(r_.UnitShows()));
    r_.p.Do([this] { r_.term.cmdESC.click(); });
    r_.p.comPort.LetLeave();
    cleared_ = r_.Now();
    due_ = due_.empty() ? due_ : due;
    screen_ = screen;
  }

  /// The unit receives a key. It must be the next key that the user is pressing, and the unit must still show
  /// the screen it was pressed on. A key that had to open the link may find no session; it does no harm.
  void Hear(std::string_view key) {
    ASSERT_FALSE(due_.empty()) << "nobody has pressed " << testing::PrintToString(key);
    EXPECT_EQ(key, due_.front());
    EXPECT_TRUE(r_.UnitShows() == screen_ || r_.UnitShows().empty())
        << "pressed on " << screen_ << ", heard on " << r_.UnitShows();
    due_.pop_front();
  }

  void ComesBack() {
    r_.p.loop.Run(25);
    r_.p.comPort.available = true;
    r_.p.loop.Run(45);
    test::ExpectSessionOrWait(r_);
    r_.p.Do([this] { r_.term.cmdTop[0].click(); });
    r_.p.loop.Run(15);  // a MUB in use is free at the second attempt
    test::WalkThrough(r_, [this](const Step& step) { Do(step.AllKeys(r_.term), step.act); });
  }

  std::mt19937 random_;
  Routed r_;
  std::deque<std::string> due_;  // the keys that the user is pressing
  double cleared_ = 0;           // when the clear key was last pressed
  std::string screen_;           // the unit's screen when the user began to press them
};

TEST(FaultWalks, RecoverAndSendEachKeyOnceToItsScreen) {
  test::RunSeeds(50, [](std::uint32_t seed) { FaultWalk(seed).Run(); });
}

}  // namespace
}  // namespace corvex
