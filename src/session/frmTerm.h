#pragma once

#include "link/modComSock.h"
#include "link/modCommSupport.h"
#include "panels/PortPanel.h"
#include "panels/modCmdInt.h"
#include "panels/modDSPchannel.h"
#include "panels/modRawCmds.h"
#include "platform/Modal.h"
#include "platform/Platform.h"
#include "print/frmSDI.h"
#include "session/Dispatcher.h"
#include "session/Keys.h"
#include "session/ModeMachine.h"
#include "session/PanelModes.h"
#include "session/Passages.h"
#include "session/ScreenLists.h"
#include "session/SessionReset.h"
#include "session/Silence.h"
#include "session/StatusPanel.h"
#include "session/TestLog.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "state/SessionState.h"
#include "stream/StreamScanner.h"
#include "stream/TextGrid.h"
#include "stream/modTML.h"
#include "trace/TraceControl.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// The main window and the root of the program. It owns the session, the link and everything between them,
/// and connects the window's events to them. The program creates it, calls Load, and runs until it closes.
class frmTerm : public TermControls {
 public:
  /// The longest time that closing may take after the user has answered any question. It is enough to end a
  /// session over the LAN, which takes longest.
  static constexpr EventLoop::Time kClosingTime = std::chrono::milliseconds(850);

  /// How long Load waits for the window to become the active one.
  static constexpr EventLoop::Time kActivationTime = std::chrono::milliseconds(500);

  frmTerm(const Platform& platform, SettingsStore& settings);
  ~frmTerm() override;

  /// Sets everything up, shows the window and starts the timer of the first connect. Waits.
  void Load();

  const MainState& main() const { return main_; }
  const SessionState& state() const { return state_; }

 private:
  // Set the handlers of the controls and of the session's parts.
  void ConnectEvents();
  void ConnectStream();
  void ConnectSession();
  void ConnectModeMenu();
  void ConnectOtherMenus();
  void ConnectPortPanel();
  void ConnectTimers();
  void ConnectWindow();
  /// Returns a handler that calls `action`, but does nothing once the program is closing. No dialogue with
  /// the modem may begin then.
  EventLoop::Task UnlessClosing(EventLoop::Task action);

  void SetMenus();
  void OfferUpgrade(UpgradeOffer offer);
  void SetSoundMenu();
  void RestorePosition();
  void SavePosition();
  void ShowLogo();
  void SetRowFont();
  void OnActivate();
  void OnResize();
  void ToggleGps();
  void Close();
  /// Returns whether the user has already chosen a mode. If so, the program does not connect at its start.
  bool Chosen() const { return main_.passage > 0; }

  static Platform With(Dialogs& dialogs, Printers& printers, const Platform& platform);

  ModalDialogs dialogs_;
  AbandonableDialogs passageDialogs_;
  ModalPrinters printers_;
  const Platform platform_;
  SettingsStore& settings_;
  MainState main_;
  SessionState state_;
  ReceiveBuffer received_;
  TextGrid grid_;
  TagStream tags_;
  StreamScanner scanner_;
  TerminalLink link_;
  ModemProbe probe_;
  ScreenLists lists_;
  StatusPanel status_;
  Silence silence_;
  Dispatcher dispatcher_;
  WindowLayout layout_;
  TraceControl trace_;
  PortPanel portPanel_;
  Passages passages_;
  SessionReset reset_;
  PanelModes panels_;
  ModeMachine modes_;
  Keys keys_;
  PanelLink panelLink_;
  TestInterface test_;
  RawCommands rawCommands_;
  DspChannel dsp_;
  frmSDI printView_;
  TestLog testLog_;
  bool closing_ = false;
};

}  // namespace corvex
