#pragma once

#include <optional>

#include "devices/frmDev.h"
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

/// Enters and leaves the main window's modes, except those of the service panels (see PanelModes). Defines
/// what is sent to the modem on each change.
///
/// Each function waits by pumping events, so clicks, timers and received bytes are handled during the wait.
/// If an event begins another passage, the current passage is abandoned (see Passages).
class ModeMachine {
 public:
  struct Parts {
    const Platform& platform;
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
    OutputPage page;
  };

  explicit ModeMachine(const Parts& parts) : p_(parts) {}

  /// The first connect after the start of the program.
  void ConnectProbe();

  /// Leaves the current mode and probes the modem. Enters the modem's menus if it answers.
  void state_await_tml_intro();

  /// Closes the link, then goes offline.
  void Disconnect();
  /// The terminal is switching off: goes offline, then closes the link.
  void ShutDown();

  /// To be called when a service panel has been left. Goes back to the modem's menus if they had been entered
  /// before; otherwise goes offline.
  void ReturnFromPanel();

  // Windows of their own. The first two return when the window has been closed. They then go back to the
  // modem's menus if they were opened from there.
  void OpenDeviceManager();
  void OpenPhoneBook();
  void GoUpgrade();

  /// To be called when the program ends: sends the bytes that end the exchange of an open window. Does not
  /// wait.
  void LeaveWindows();

  /// Selects one of the MUBs (0 to 3) of the ERB unit. Ends the session with the old MUB. Connects to the new
  /// one if the program was connected or trying to connect.
  void SelectMub(int mub);

  /// The tick of tmrWatchdog. Connects again if nothing has been received since the last tick, or if the last
  /// attempt to connect has failed.
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
  void ShowDeviceManager();
  void LeaveForWindow();
  void ReturnToTerminal(bool wasTerminal);
  void EndTick();

  Parts p_;
  std::optional<frmUpgrade> upgrade_;
  std::optional<frmDev> deviceManager_;  ///< While it is open.
  bool deviceManagerBusy_ = false;
  bool reconnecting_ = false;  ///< The watchdog is connecting.
};

}  // namespace corvex
