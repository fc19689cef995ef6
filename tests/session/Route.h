#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "state/ScreenRecord.h"
#include "support/Program.h"
#include "support/UnitLink.h"

// The whole program at the end of each of its four routes to a terminal, and a user who walks through the
// terminal's screens.

namespace corvex::test {

enum class Route { Serial, Lan, LanErb, SerialErb };
inline constexpr Route kRoutes[] = {Route::Serial, Route::Lan, Route::LanErb, Route::SerialErb};

inline const char* RouteName(Route route) {
  constexpr const char* kNames[] = {"serial", "lan", "lan-erb", "serial-erb"};
  return kNames[static_cast<int>(route)];
}

/// A program with a simulated unit at the end of one route, behind an ERB unit where that belongs to it.
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
  /// What the unit that is reached has on its display; empty if none is, or it shows none.
  std::string_view UnitShows() const { return unit() == nullptr ? std::string_view() : unit()->Shows(); }
  double Now() const { return std::chrono::duration<double>(p.loop.Now()).count(); }

  const Route route;
  Program p;
  frmTerm& term = p.term;
  std::function<void(simulation::Faults)> setFaults;
  std::function<void(std::string_view)> hear;  ///< The far side hears what the program has not said.
  std::function<void()> hangUp;  ///< A serial port is gone then until `available` says otherwise.
  std::function<const simulation::Unit*()> unit;  ///< The unit that is reached, or null.
  std::function<void(std::string_view)>
      onHeard;  ///< Called with each send of the program, before it is served.

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

/// One thing that a user does when he sees a screen, and what he sees then.
struct Step {
  const char* screen;  ///< the unit's name of the screen on which it is done
  const char* seen;    ///< what stands on the PC's then: in a message, a list's title, or the first row
  Keys keys;           ///< what has to reach the unit, key by key
  std::function<void(frmTerm&)> act;
  /// Where he chooses from a list first: what else has to reach the unit for that, before `keys`.
  std::function<Keys(frmTerm&)> choose = nullptr;

  Keys AllKeys(frmTerm& term) const {
    Keys all = choose ? choose(term) : Keys();
    all.insert(all.end(), keys.begin(), keys.end());
    return all;
  }
};

/// Chooses an entry of a menu, which goes out as its number. On a bad line the entry in its place may be
/// another.
inline Keys ChooseEntry(frmTerm& term, std::size_t entry) {
  if (entry >= term.ListMenu.Items().size()) return {};
  term.ListMenu.selected = static_cast<int>(entry) + 1;
  const std::string& key = term.ListMenu.Items()[entry].key;
  return {key.substr(0, key.find("Men"))};
}

/// Chooses a row of a choice list. The unit's cursor has to be led there from where it is; the unit remembers
/// what was chosen before.
inline Keys ChooseRow(frmTerm& term, int row) {
  const int way = row - ChoiceIndexOfCurrent(term.state().choiceScreen);
  term.ListChoice.listIndex = row;
  return Keys(static_cast<std::size_t>(std::abs(way)), way > 0 ? kDown : kUp);
}

/// A walk from the idle screen and back to it: a menu by its list and by number, a choice that is walked, the
/// message that goes by itself, a table that is walked, a text, and the ways back.
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

/// What stands on the PC's screen where it is named: the message, the list's title, or the first row.
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

/// Walks all of it, step by step with `take`. Each screen has to be there within four seconds, on the unit
/// and on the PC.
inline void WalkThrough(Routed& r, const std::function<void(const Step&)>& take) {
  constexpr double kLook = 0.3;  // what a user needs to see it; less could meet two screens in one burst
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

/// What has to be seen of a program whose line has been whole again for a while: a session, if it does not
/// wait for its user. It does so offline, and where a probe was refused before the first session.
inline void ExpectSessionOrWait(Routed& r) {
  const ModemMode mode = r.term.main().mode;
  const bool waits =
      mode == ModemMode::Offline || (mode == ModemMode::AwaitIntro && !r.term.tmrWatchdog.enabled);
  EXPECT_TRUE(mode == ModemMode::Terminal || waits) << "mode " << static_cast<int>(mode);
  EXPECT_TRUE(waits || !r.UnitShows().empty());
}

}  // namespace corvex::test
