#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

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
  explicit Routed(Route taken, simulation::ErbOptions options = {}) : route(taken) {
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
    unit = [link] { return Reached(link->unit); };
  }
};

/// One thing that a user does when he sees a screen, and what he sees then.
struct Step {
  const char* screen;  ///< the unit's name of the screen on which it is done
  const char* seen;    ///< what stands on the PC's then: in a message, a list's title, or the first row
  std::vector<std::string_view> keys;  ///< what has to reach the unit, key by key
  std::function<void(frmTerm&)> act;
};

/// A walk from the idle screen and back to it: a menu by its list and by number, a choice that is walked, the
/// message that goes by itself, a table that is walked, a text, and the ways back.
inline const std::vector<Step>& Walk() {
  constexpr std::string_view kDown = "\x1b[B";
  constexpr std::string_view kUp = "\x1b[A";
  constexpr std::string_view kEscape = "\x1b";
  const auto digit = [](char c) { return [c](frmTerm& term) { term.ListMenu.keyPress(c); }; };
  const auto escape = [](frmTerm& term) { term.cmdESC.click(); };
  const auto row = [](std::size_t i) { return [i](frmTerm& term) { term.corvexLbl[i].click(); }; };
  static const std::vector<Step> kWalk{
      {"idle", "CORVEX MARINE", {"\x15"}, [](frmTerm& term) { term.cmdSK[0].click(); }},
      {"main",
       "Main menu",
       {" 4"},
       [](frmTerm& term) {
         term.ListMenu.selected = 5;
         term.ListMenu.doubleClick();
       }},
      {"4", "4 Setup", {"1"}, digit('1')},
      {"4.1",
       "4.1 Language",
       {kDown, kDown, "\r"},
       [](frmTerm& term) {
         term.ListChoice.listIndex = 2;
         term.ListChoice.doubleClick();
       }},
      {"language", "Language/Norsk", {}, nullptr},
      {"4", "4 Setup", {"3"}, digit('3')},
      {"4.3",
       "4.3 Spot beam",
       {kDown, "\x15"},
       [](frmTerm& term) {
         term.ListChoice.listIndex = 1;
         term.cmdSK[0].click();
       }},
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

/// Walks all of it. Each screen has to be there within four seconds, on the unit and on the PC.
inline void WalkThrough(Routed& r) {
  constexpr double kLook = 0.3;  // what a user needs to see it; less could meet two screens in one burst
  for (const Step& step : Walk()) {
    const double began = r.Now();
    do {
      r.p.loop.Run(kLook);
    } while (r.Now() < began + 4 && !(Sees(r.term, step) && r.UnitShows() == step.screen));
    ASSERT_TRUE(Sees(r.term, step)) << step.seen << " is not seen: " << Title(r.term);
    ASSERT_EQ(r.UnitShows(), step.screen);
    if (step.act) r.p.Do([&] { step.act(r.term); });
  }
}

}  // namespace corvex::test
