#pragma once

#include <string_view>

#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "stream/modTML.h"
#include "window/TermControls.h"

namespace corvex {

/// The indicators around the terminal area. Each function shows one value of the session. It is called when
/// the value has changed.
class StatusPanel {
 public:
  StatusPanel(TermControls& window, MainState& main, SessionState& state, const SettingsStore& settings,
              Sound& sound)
      : window_(window), main_(main), state_(state), settings_(settings), sound_(sound) {}

  void SoundTone();
  void ShowSignal();
  void ShowTime();   ///< Also tells the watchdog that the modem is alive.
  void PlaceTime();  ///< Places the time after the width of the screen has changed.
  void ShowMail(bool waiting);
  void ShowSim(bool inUse);
  void ShowTemperature();
  void ShowPsuTemperature();
  void ShowGpsHeading();
  void ShowGpsPosition();
  void ShowMubInfo();
  void ShowUserInfo();
  void ShowSpotBeam();
  void ShowCompression(TagToken kind, std::string_view toolTip);
  /// Clears all indicators, since none of the values is current any more.
  void Clear();

 private:
  TermControls& window_;
  MainState& main_;
  SessionState& state_;
  const SettingsStore& settings_;
  Sound& sound_;
  EventLoop::Time toneEnds_{0};
};

}  // namespace corvex
