#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "state/ScreenRecord.h"
#include "support/Program.h"
#include "support/Recorded.h"
#include "support/UnitLink.h"

// The whole program on one of its four routes to a terminal, and a user who walks through the terminal's
// screens.

namespace corvex::test {

enum class Route { Serial, Lan, LanErb, SerialErb };
inline constexpr Route kRoutes[] = {Route::Serial, Route::Lan, Route::LanErb, Route::SerialErb};

inline const char* RouteName(Route route) {
  constexpr const char* kNames[] = {"serial", "lan", "lan-erb", "serial-erb"};
  return kNames[static_cast<int>(route)];
}

/// A program with a simulated unit at the far end of a route. Some routes lead through an ERB unit.
struct Routed {
  explicit Routed(Route taken, simulation::ErbOptions options = {}, double timeOfDay = 36000)
      : route(taken), p(timeOfDay) {
    p.settings.config.lan.Set(IsLan());
    p.settings.config.erbaccess.Set(HasErb());
    options.serial = !IsLan();
    if (HasErb()) {
      IsLan() ? Attach<simulation::ErbFront>(p.sock, options)
              : Attach<simulation::ErbFront>(p.comPort, options);
    } else {
      IsLan() ? Attach<simulation::Unit>(p.sock, options.unit)
              : Attach<simulation::Unit>(p.comPort, options.unit);
    }
  }

  bool IsLan() const { return route == Route::Lan || route == Route::LanErb; }
  bool HasErb() const { return route == Route::LanErb || route == Route::SerialErb; }
  const std::string& Sent() const { return IsLan() ? p.sock.sent : p.comPort.sent; }
  /// The name of the screen on the display of the reached unit; empty without a unit or a screen.
  std::string_view UnitShows() const { return unit() == nullptr ? std::string_view() : unit()->Shows(); }
  double Now() const { return std::chrono::duration<double>(p.loop.Now()).count(); }

  const Route route;
  Program p;
  frmTerm& term = p.term;
  std::function<void(simulation::Faults)> setFaults;
  std::function<void(std::string_view)> hear;     ///< Gives the far side bytes that the program has not sent.
  std::function<void()> hangUp;                   ///< A serial port stays away until its `available` is set.
  std::function<const simulation::Unit*()> unit;  ///< The reached unit, or null.
  std::function<void(std::string_view)>
      onHeard;  ///< Called with each send of the program before the far side receives it.

 private:
  static const simulation::Unit* Reached(const simulation::Unit& alone) { return &alone; }
  static const simulation::Unit* Reached(const simulation::ErbFront& front) { return front.Mub(); }

  template <typename FarSide, typename Port>
  void Attach(Port& port, typename FarSide::Options options) {
    using Link = UnitLink<Port, FarSide>;
    const auto link = std::make_shared<Link>(p.loop, port, std::move(options));
    link->onHeard = [this](std::string_view bytes) {
      if (onHeard) onHeard(bytes);
    };
    setFaults = [link](simulation::Faults faults) { link->SetFaults(faults); };
    hangUp = [link] { link->HangUp(); };
    hear = [link](std::string_view bytes) { link->unit.Receive(bytes); };
    unit = [link] { return Reached(link->unit); };
  }
};

using Keys = std::vector<std::string>;
inline const std::string kDown = "\x1b[B";
inline const std::string kUp = "\x1b[A";

/// One action of the user, and the screen on which the user does it.
struct Step {
  const char* screen;  ///< the unit's name of the screen
  const char* seen;    ///< a part of what Title returns for it
  Keys keys;           ///< the keys that must reach the unit
  std::function<void(frmTerm&)> act;
  /// Chooses from a list first. Returns the keys that must reach the unit before `keys`.
  std::function<Keys(frmTerm&)> choose = nullptr;

  Keys AllKeys(frmTerm& term) const {
    Keys all = choose ? choose(term) : Keys();
    all.insert(all.end(), keys.begin(), keys.end());
    return all;
  }
};

/// Chooses an entry of a menu. Its number must reach the unit; on a bad line this may be another number.
inline Keys ChooseEntry(frmTerm& term, std::size_t entry) {
  if (entry >= term.ListMenu.Items().size()) return {};
  term.ListMenu.selected = static_cast<int>(entry) + 1;
  const std::string& key = term.ListMenu.Items()[entry].key;
  return {key.substr(0, key.find("Men"))};
}

/// Chooses a row of a choice list. The keys move the unit's cursor there from the row that was chosen before.
inline Keys ChooseRow(frmTerm& term, int row) {
  const int way = row - ChoiceIndexOfCurrent(term.state().choiceScreen);
  term.ListChoice.listIndex = row;
  return Keys(static_cast<std::size_t>(std::abs(way)), way > 0 ? kDown : kUp);
}

/// A walk from the idle screen and back to it: menus by list and by number, choice lists, a message that
/// disappears by itself, a table, a text, and the ways back.
inline const std::vector<Step>& Walk() {
  const std::string kEscape = "\x1b";
  const auto digit = [](char c) { return [c](frmTerm& term) { term.ListMenu.keyPress(c); }; };
  const auto escape = [](frmTerm& term) { term.cmdESC.click(); };
  const auto entry = [](std::size_t i) { return [i](frmTerm& term) { return ChooseEntry(term, i); }; };
  const auto choice = [](int i) { return [i](frmTerm& term) { return ChooseRow(term, i); }; };
  const auto row = [](std::size_t i) { return [i](frmTerm& term) { term.corvexLbl[i].click(); }; };
  static const std::vector<Step> kWalk{
      {"idle", "CORVEX MARINE", {"\x15"}, [](frmTerm& term) { term.cmdSK[0].click(); }},
      {"main", "Main menu", {}, [](frmTerm& term) { term.ListMenu.doubleClick(); }, entry(4)},
      {"4", "4 Setup", {"1"}, digit('1')},
      {"4.1", "4.1 Language", {"\r"}, [](frmTerm& term) { term.ListChoice.doubleClick(); }, choice(2)},
      {"language", "Language/Norsk", {}, nullptr},
      {"4", "4 Setup", {"3"}, digit('3')},
      {"4.3", "4.3 Spot beam", {"\x15"}, [](frmTerm& term) { term.cmdSK[0].click(); }, choice(1)},
      {"changed", "Setting changed/", {}, nullptr},
      {"4", "4 Setup", {kEscape}, escape},
      {"main", "Main menu", {"1"}, digit('1')},
      {"1", "1 Phone book", {"1"}, digit('1')},
      {"1.1", "1.1 Names", {kDown, kDown}, row(4)},
      {"1.1", "Agent, harbour", {kUp}, row(1)},
      {"1.1", "-----", {"\r"}, row(2)},
      {"entry", "Entry", {"\x10"}, [](frmTerm& term) { term.cmdSK[3].click(); }},
      {"1.1", "-----", {kEscape}, escape},
      {"1", "1 Phone book", {kEscape}, escape},
      {"main", "Main menu", {kEscape}, escape},
      {"idle", "CORVEX MARINE", {}, nullptr},
  };
  return kWalk;
}

/// The text that identifies the visible screen: the message, the list's title, or the first row.
inline std::string Title(const frmTerm& term) {
  if (term.main().mode != ModemMode::Terminal) return {};
  if (term.frmMsg.visible) return term.LblMsg[0].caption.Get() + '/' + term.LblMsg[1].caption.Get();
  if (term.frmChoice.visible) return term.frmChoice.caption;
  if (term.frmMenu.visible) return term.frmMenu.caption;
  return term.corvexLbl[0].caption;
}

/// Whether the user sees the screen of a step.
inline bool Sees(const frmTerm& term, const Step& step) {
  return Title(term).find(step.seen) != std::string::npos;
}

/// What the program has recorded of its link. Needs the setting wirelog.
inline std::string WireLog(const Routed& r) {
  for (const auto& file : std::filesystem::directory_iterator(r.p.settings.AppFolder())) {
    if (file.path().filename().string().starts_with("wire-")) return ReadFile(file.path());
  }
  return {};
}

/// Calls `run` with each seed from 1 to CORVEX_SEEDS, or to `otherwise`, until a test fails. With CORVEX_SEED
/// only with that seed.
inline void RunSeeds(int otherwise, const std::function<void(std::uint32_t)>& run) {
  const auto number = [](const char* name, int standard) {
    const char* text = std::getenv(name);
    return text == nullptr ? standard : std::atoi(text);
  };
  const int only = number("CORVEX_SEED", 0);
  const int last = only > 0 ? only : number("CORVEX_SEEDS", otherwise);
  for (int seed = std::max(only, 1); seed <= last && !::testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("CORVEX_SEED=" + std::to_string(seed));
    run(static_cast<std::uint32_t>(seed));
  }
}

/// Walks all steps and calls `take` for each action. Each screen must appear within four seconds, on the unit
/// and on the PC.
inline void WalkThrough(Routed& r, const std::function<void(const Step&)>& take) {
  constexpr double kLook = 0.3;  // a user needs this time; with less, two screens could come in one burst
  for (const Step& step : Walk()) {
    const double began = r.Now();
    do {
      r.p.loop.Run(kLook);
    } while (r.Now() < began + 4 && !(Sees(r.term, step) && r.UnitShows() == step.screen));
    ASSERT_TRUE(Sees(r.term, step)) << step.seen << " is not seen: " << Title(r.term);
    ASSERT_EQ(r.UnitShows(), step.screen);
    if (step.act) take(step);
  }
}

/// Expects a session on a line that has worked again for a while, unless the program waits for its user. It
/// waits offline, and after a refused probe before the first session.
inline void ExpectSessionOrWait(Routed& r) {
  const ModemMode mode = r.term.main().mode;
  const bool waits =
      mode == ModemMode::Offline || (mode == ModemMode::AwaitIntro && !r.term.tmrWatchdog.enabled);
  EXPECT_TRUE(mode == ModemMode::Terminal || waits) << "mode " << static_cast<int>(mode);
  EXPECT_TRUE(waits || !r.UnitShows().empty());
}

}  // namespace corvex::test
