#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "link/modComSock.h"
#include "link/modCommSupport.h"
#include "panels/PortPanel.h"
#include "platform/Platform.h"
#include "session/Silence.h"
#include "session/StatusPanel.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/TextGrid.h"
#include "upgrade/frmUpgrade.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// The main window's modes: how one passes into another, and exactly what goes out to the modem on each
/// passage.
///
/// All procedures wait by pumping events, so that clicks, ticks and received bytes can run inside any of
/// them, the same procedures included. A passage that begins gives up whatever is waiting, and runs when that
/// has unwound: so of two clicks the last one counts, without a further byte for the first.
class ModeMachine {
 public:
  struct Parts {
    const Platform& platform;
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    StatusPanel& status;
    Silence& silence;
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

  /// The modem's menus have been entered.
  std::function<void()> sessionOpened;

 private:
  /// What the modem is told when its session ends.
  enum class Farewell { None, Cancel };

  /// A passage that has begun, and what is done in its place if it cannot open the link.
  struct Passage {
    EventLoop::Task run;
    EventLoop::Task otherwise = {};
    bool connects = false;  ///< It ends in the modem's menus, if the modem answers.
  };

  void Begin(EventLoop::Task run) { Begin(Passage{std::move(run)}); }
  void Begin(const Passage& passage);
  void BeginPanel(EventLoop::Task run);
  void FirstConnect();
  void Connect();
  ProbeWord Probe();
  void AwaitWatchdog();
  void EnterByTagMode(bool tellsFailure);
  void EnterTerminalMode();
  void TakeOffline(Farewell farewell);
  void EndSession();
  void ClearSession();
  void ShowPortSetup();
  void FocusAtMode();
  void LeavePanel();
  void LeaveTerminal();
  void LeaveForTextPanel();
  void LeaveForWindow();
  void ReturnFromPanel();
  void ShowTextPanel(std::size_t panel);
  void CloseTrace();
  void ResetScreen();
  void DropChanges();
  void ClearScreen();
  void ShowPortLabel();
  void ReturnToTerminal(bool wasTerminal);
  void EndTick();

  Parts p_;
  Passage passage_;  ///< The one that is under way; empty at rest.
  std::optional<frmUpgrade> upgrade_;
  bool deviceManagerBusy_ = false;
  bool reconnecting_ = false;  ///< By the watchdog.
};

}  // namespace corvex
