#pragma once

#include <optional>

#include "link/modComSock.h"
#include "link/modCommSupport.h"
#include "platform/Modal.h"
#include "platform/Transports.h"
#include "session/PanelModes.h"
#include "session/Passages.h"
#include "session/SessionReset.h"
#include "session/Silence.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "trace/TraceControl.h"
#include "upgrade/frmUpgrade.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// The main window's modes apart from those of the service panels: how each is entered and left, and what the
/// modem is sent on the way.
///
/// Each procedure waits by pumping events, so clicks, ticks and received bytes are handled during the wait.
/// If one of them begins another passage, the first is given up (see Passages).
class ModeMachine {
 public:
  struct Parts {
    SerialControl& comPort;
    SocketControl& sock;
    AbandonableDialogs& dialogs;
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    Silence& silence;
    TraceControl& trace;
    MainState& main;
    SessionState& state;
    ReceiveBuffer& received;
    TerminalLink& link;
    ModemProbe& probe;
    Passages& passages;
    SessionReset& reset;
    PanelModes& panels;
  };

  explicit ModeMachine(const Parts& parts) : p_(parts) {}

  /// The first connect after the start of the program.
  void ConnectProbe();

  /// Leaves the current mode, probes the modem and enters its menus.
  void state_await_tml_intro();

  /// Closes the link, then goes offline.
  void Disconnect();
  /// The terminal is switching off: goes offline, then closes the link.
  void ShutDown();

  /// A service panel has been left. Goes back to the modem's menus if they had been entered before.
  void ReturnFromPanel();

  // Windows of their own. The first two return when the window has been closed. They then go back to the
  // modem's menus if they were opened from there.
  void OpenDeviceManager();
  void OpenPhoneBook();
  void GoUpgrade();

  /// From now on connects to another of the MUBs (0 to 3) of the ERB unit.
  void SelectMub(int mub);

  /// The tick of tmrWatchdog: connects again if nothing has been received since the last tick.
  void Watchdog();

 private:
  /// What the modem is sent when its session ends.
  enum class Farewell { None, Cancel };

  void FirstConnect();
  void Connect();
  ProbeWord Probe();
  void AwaitWatchdog();
  void EnterByTagMode(bool showsFailure);
  void EnterTerminalMode();
  void ShowPortLabel();
  void TakeOffline(Farewell farewell);
  void LeaveForWindow();
  void ReturnToTerminal(bool wasTerminal);
  void EndTick();

  Parts p_;
  std::optional<frmUpgrade> upgrade_;
  bool deviceManagerBusy_ = false;
  bool reconnecting_ = false;  ///< The watchdog is connecting.
};

}  // namespace corvex
