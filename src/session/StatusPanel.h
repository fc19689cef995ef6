#pragma once

#include <string_view>

#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "stream/modTML.h"
#include "window/TermControls.h"

namespace corvex {

/// The indicators around the terminal area. Each procedure shows one of the session's values when the
/// dispatcher finds its flag set.
class StatusPanel {
 public:
  StatusPanel(TermControls& window, MainState& main, SessionState& state, const SettingsStore& settings,
              Sound& sound)
      : window_(window), main_(main), state_(state), settings_(settings), sound_(sound) {}

  void SoundTone();
  void ShowSignal();
  void ShowTime();   ///< A time tag also counts as a sign of life of the modem.
  void PlaceTime();  ///< In proportion to the width of the screen, which has changed.
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
  /// Takes all readings away, as none is current any more.
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
