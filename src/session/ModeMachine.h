#pragma once

#include <functional>
#include <optional>

#include "common/INIFuncs.h"
#include "link/PortPanel.h"
#include "link/modComSock.h"
#include "link/modCommSupport.h"
#include "platform/Platform.h"
#include "session/MainState.h"
#include "session/ReceiveBuffer.h"
#include "session/SessionState.h"
#include "session/TermControls.h"
#include "session/TextGrid.h"
#include "session/WindowLayout.h"
#include "upgrade/frmUpgrade.h"

namespace corvex {

/// The main window's modes: how one passes into another, and exactly what goes out to the modem on each
/// passage.
///
/// All procedures wait by pumping events, so that clicks, ticks and received bytes can run inside any of
/// them, the same procedures included. The mode tells those what they may do, and a procedure that finds
/// itself overtaken by another after a wait stops.
class ModeMachine {
 public:
  struct Parts {
    const Platform& platform;
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    PortPanel& portPanel;
    MainState& main;
    SessionState& state;
    ReceiveBuffer& received;
    TextGrid& grid;
    TerminalLink& link;
    ModemProbe& probe;
  };

  explicit ModeMachine(const Parts& parts) : p_(parts) {}

  /// The first connect after the start.
  void ConnectProbe();

  /// The one way into the modem's menus from anywhere: leaves the present mode, probes, and enters.
  void state_await_tml_intro();

  /// Only after a good probe.
  void EnterTerminalMode();

  /// Ends the session. Closing the link is the caller's affair.
  void GoOffline();
  /// Closes the link, then goes offline.
  void Disconnect();
  /// The terminal is switching off: goes offline, then closes the link.
  void ShutDown();

  // The service panels. Each is a toggle: started while its own mode is on, it leaves it.
  void EnterPortSetup();
  void EnterTestInterface();
  void EnterAtMode();

  // Windows of their own. The first two return when the window has been closed, and then go back to the
  // modem's menus if those had been left.
  void OpenDeviceManager();
  void OpenPhoneBook();
  void GoUpgrade();

  /// Reaches another of the modems (0 to 3) behind the ERB unit from now on.
  void SelectMub(int mub);
  /// Shows in the menus which route and which modem the settings name.
  void RefreshMenuMarks();

  /// The tick of tmrWatchdog: connects anew if the modem has given no sign of life since the last one.
  void Watchdog();

  /// Stops every timer of the window, and ends what would stay for ever without: the popup, and rows that
  /// stand still until the modem's cursor has been walked.
  void StopTimers();
  void UpdateModeMenu();

  /// Closes the master trace window if it is open; the modem can still be told. It waits.
  std::function<void()> closeTrace;

 private:
  Overtaken BeginPassage();
  bool TakeOffline(const Overtaken& overtaken);
  void EndSession();
  void EnterByTagMode(const Overtaken& overtaken, bool tellsFailure);
  void LeavePanel();
  void LeaveTerminal();
  void LeaveForTextPanel(const Overtaken& overtaken);
  void ReturnFromPanel(const Overtaken& overtaken);
  void ShowTextPanel(std::size_t panel);
  void CloseTrace();
  void ResetScreen();
  void ClearScreen();
  void ShowPortLabel();
  void ReturnToTerminal(bool wasTerminal);

  Parts p_;
  std::optional<frmUpgrade> upgrade_;
  bool deviceManagerBusy_ = false;
};

}  // namespace corvex
