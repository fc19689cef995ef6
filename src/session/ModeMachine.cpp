#include "session/ModeMachine.h"

#include <string>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "book/frmBook.h"
#include "devices/frmDev.h"
#include "panels/modRawCmds.h"
#include "session/RowPainter.h"
#include "session/SoftKeyPanel.h"
#include "window/PopUp.h"

namespace corvex {

namespace {

constexpr std::string_view kRepaint = "\x1B\x12\x1B";
constexpr std::string_view kLeaveTestShell = "quit\r\nat\r\n";
constexpr std::size_t kPortPanel = 0;
constexpr std::size_t kTestPanel = 1;
constexpr std::size_t kAtPanel = 4;

}  // namespace

/// A pause that has run over midnight is given up a minute later. Nobody has asked for that, so the passage
/// begins once more.
void ModeMachine::Begin(const Passage& passage) {
  passage_ = passage;
  const unsigned number = ++p_.main.passage;
  p_.window.loop().AbandonWaits([this, run = passage.run, number] {
    for (bool again = true; again;) {
      try {
        again = false;
        run();
      } catch (const WaitAbandoned& wait) {
        if (!wait.overdue || p_.main.passage != number) throw;
        again = true;
      }
    }
    if (p_.main.passage == number) passage_ = {};
  });
}

/// A panel needs an open link. If that fails nothing changes: what was given up for it is carried out.
void ModeMachine::BeginPanel(EventLoop::Task run) {
  EventLoop::Task before = passage_.otherwise ? passage_.otherwise : passage_.run;
  Begin({.run =
             [this, run = std::move(run), before] {
               if (p_.link.EnsureLinkOpen()) {
                 run();
               } else if (before) {
                 Begin(before);
               }
             },
         .otherwise = before});
}

void ModeMachine::ConnectProbe() {
  Begin([this] { FirstConnect(); });
}

void ModeMachine::FirstConnect() {
  TermControls& window = p_.window;
  MainState& main = p_.main;
  const Overtaken overtaken(main);
  p_.layout.HideTextView();
  p_.layout.HideConnectPanels();
  ClearScreen();
  window.frmKeys.visible = true;
  p_.link.CloseLink();
  const ProbeWord word = Probe();
  if (main.mode == ModemMode::Closing) return;
  switch (word) {
    case ProbeWord::Ok:
      // Over the LAN, where the port is closed, a failure shows nothing and changes nothing.
      EnterByTagMode(p_.platform.comPort.PortOpen());
      break;
    case ProbeWord::Busy:
      if (window.visible) ShowPopUp(window, "Port is busy - check running applications");
      break;
    case ProbeWord::None:
      if (!window.visible) break;
      p_.platform.dialogs.MessageBox("No contact - please check connections");
      if (!overtaken()) AwaitWatchdog();
      break;
    case ProbeWord::CheckSpeed:
      if (!window.visible) break;
      // Nothing is detected in spite of the wording: the user is led to the port settings.
      if (p_.platform.dialogs.AskYesNo("Bad response - try and autodetect modem?") && !overtaken()) {
        ShowPortSetup();
        main.mode = ModemMode::Failed;
      }
      break;
  }
}

void ModeMachine::state_await_tml_intro() {
  Begin({.run = [this] { Connect(); }, .connects = true});
}

void ModeMachine::Connect() {
  TermControls& window = p_.window;
  LeavePanel();
  p_.link.CloseLink();
  p_.layout.HideTextView();
  p_.main.mode = ModemMode::AwaitIntro;
  UpdateModeMenu();
  p_.received.ClearRx();
  ClearSession();
  p_.layout.ShowCompactWindow();
  p_.layout.FocusScreen();
  window.frmNav.BringToFront();
  window.frmKeys.visible = true;
  switch (Probe()) {
    case ProbeWord::Ok:
      EnterByTagMode(true);
      break;
    case ProbeWord::None:
    case ProbeWord::Busy:  // an address that cannot be used is not worth an hourglass without end
      ShowPopUp(window, "No response.|Check connection to modem");
      AwaitWatchdog();  // it is stopped after Offline
      break;
    case ProbeWord::CheckSpeed:
      ShowPopUp(window,
                "Invalid response at " + p_.platform.comPort.Settings() + "|Check parameters and try again");
      break;
  }
}

ProbeWord ModeMachine::Probe() {
  p_.window.pointer = Pointer::Hourglass;
  p_.window.lblPort.caption = "";
  const ProbeWord word = p_.probe.DetectModem();
  p_.window.pointer = Pointer::Normal;
  return word;
}

/// The next connect is the watchdog's.
void ModeMachine::AwaitWatchdog() {
  p_.main.mode = ModemMode::Failed;
  p_.window.pointer = Pointer::Normal;
  p_.window.tmrWatchdog.enabled = true;
}

void ModeMachine::EnterByTagMode(bool tellsFailure) {
  p_.main.rxSeen = false;
  if (p_.link.EnterTagMode()) {
    EnterTerminalMode();
    return;
  }
  if (!tellsFailure) return;
  TakeOffline(Farewell::Cancel);
  p_.link.CloseLink();
  ShowPopUp(p_.window, "No Valid Response");  // last, as going offline clears what stands there
}

void ModeMachine::EnterTerminalMode() {
  p_.window.tmrWatchdog.enabled = true;
  DropChanges();
  ResetScreen();
  p_.link.WriteText(kRepaint);
  if (p_.window.Active()) p_.window.CorvexFocus1.SetFocus();
  p_.main.mode = ModemMode::Terminal;
  p_.main.tagSession = true;
  UpdateModeMenu();
  Pause(p_.window.loop(), 0.2);
  p_.link.WriteText(kRepaint);  // twice; that is meant
  ShowPortLabel();
  p_.silence.Watch();
  if (sessionOpened) sessionOpened();
}

void ModeMachine::ShowPortLabel() {
  Label& label = p_.window.lblPort;
  if (p_.link.LinkIsLan()) {
    const SocketControl& sock = p_.platform.sock;
    label.caption = "LAN";
    label.toolTip = "Local address " + sock.LocalAddress() + " server " + sock.RemoteHost() + " port " +
                    std::to_string(sock.RemotePort());
  } else {
    label.caption = "COM" + std::to_string(p_.platform.comPort.CommPort());
    label.toolTip = " access is via serial port";
  }
}

/// The farewell goes out on the link as long as it is open, and nothing opens it for that: over a serial port
/// it is CAN, over the LAN what closing the link sends anyway.
void ModeMachine::Disconnect() {
  Begin([this] {
    StopTimers();  // before the first wait, in which the watchdog would connect again
    {
      const ScopedFlag leaving(p_.main.leaving);
      const bool serial = !p_.link.LinkIsLan() && p_.platform.comPort.PortOpen();
      if (serial && p_.main.mode == ModemMode::Terminal) p_.link.SendCancel();
      p_.link.CloseLink();
    }
    TakeOffline(Farewell::None);
  });
}

void ModeMachine::ShutDown() {
  Begin([this] {
    TakeOffline(Farewell::Cancel);
    p_.link.CloseLink();
  });
}

/// Ends the session. Closing the link is the caller's affair.
void ModeMachine::TakeOffline(Farewell farewell) {
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  CloseTrace();
  EndSession();
  if (p_.main.mode == ModemMode::Terminal && farewell == Farewell::Cancel) {
    const ScopedFlag leaving(p_.main.leaving);
    p_.link.SendCancel();
  }
  window.pointer = Pointer::Normal;  // of a probe that was left
  window.frmAux.visible = false;
  p_.layout.ShowCompactWindow();
  p_.layout.HideTextView();
  window.frmNav.visible = true;
  window.frmNav.BringToFront();
  p_.layout.FocusScreen();  // and not to whatever comes behind a list or a panel that is gone
  p_.main.rxSeen = false;
  p_.main.mode = ModemMode::Offline;
  UpdateModeMenu();
}

void ModeMachine::EndSession() {
  StopTimers();
  ClearSession();
  p_.main.tagSession = false;
}

/// Takes off the screen all that the unit has said: nobody is to take it for current.
void ModeMachine::ClearSession() {
  DropChanges();
  ClearScreen();
  p_.layout.HideLists();
  p_.silence.Stop();
  p_.status.Clear();
}

void ModeMachine::EnterPortSetup() {
  Begin([this] { ShowPortSetup(); });
}

void ModeMachine::ShowPortSetup() {
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  CloseTrace();
  p_.portPanel.ShowRoute();
  StopTimers();
  switch (p_.main.mode) {
    case ModemMode::PortSetup:
      window.fmOnTab[kPortPanel].visible = false;
      ReturnFromPanel();
      return;
    case ModemMode::TestInterface:
      window.fmOnTab[kTestPanel].visible = false;
      if (p_.link.EnsureLinkOpen()) p_.link.WriteText(kLeaveTestShell);
      break;
    case ModemMode::AtMode:
      window.fmOnTab[kAtPanel].visible = false;
      break;
    case ModemMode::Terminal: {
      p_.main.tagSession = true;
      const ScopedFlag leaving(p_.main.leaving);
      p_.link.SendCancel();
      ClearSession();  // its keys lead nowhere now
      break;
    }
    default:
      break;
  }
  p_.main.rxSeen = false;
  p_.link.CloseLink();
  window.pointer = Pointer::Normal;
  p_.layout.HideTextView();
  p_.layout.HideLists();
  p_.portPanel.Refresh();
  p_.layout.ShowPanel(kPortPanel);
  (p_.settings.config.lan.Get() ? window.frmLan : window.frmSerial).visible = true;
  if (window.Active()) window.tabConnect.SetFocus();
  p_.main.mode = ModemMode::PortSetup;
  UpdateModeMenu();
}

void ModeMachine::EnterTestInterface() {
  BeginPanel([this] {
    const bool leaving = p_.main.mode == ModemMode::TestInterface;
    LeaveForTextPanel();
    if (leaving) {
      p_.window.fmOnTab[kTestPanel].visible = false;
      ReturnFromPanel();
      return;
    }
    ShowTextPanel(kTestPanel);
    TestPanel& panel = p_.window.testPanel;
    panel.frmAero.visible = true;
    p_.link.WriteText("\x18");
    p_.link.WriteText("at+wquiltest\r\n");
    if (p_.window.Active()) panel.txtRaw.SetFocus();
    p_.main.mode = ModemMode::TestInterface;
    for (OptionButton& option : panel.optRxTx) option.enabled = true;
    UpdateModeMenu();
  });
}

void ModeMachine::EnterAtMode() {
  BeginPanel([this] {
    const bool leaving = p_.main.mode == ModemMode::AtMode;
    LeaveForTextPanel();
    if (leaving) {
      p_.window.fmOnTab[kAtPanel].visible = false;
      p_.window.frmKeys.visible = true;
      ReturnFromPanel();
      return;
    }
    p_.main.rxSeen = false;
    ShowTextPanel(kAtPanel);
    p_.main.mode = ModemMode::AtMode;
    UpdateModeMenu();
    Begin([this] { FocusAtMode(); });
  });
}

/// A passage of its own: the mode has been entered, and what went before must not begin again.
void ModeMachine::FocusAtMode() {
  PauseShort(p_.window.loop());
  AtPanel& panel = p_.window.atPanel;
  FocusAtPanel(p_.window);
  if (!panel.optAutoSend.value) p_.window.defaultButton = &panel.cmdRawBytes;  // else Enter is to be sent
}

/// Leaves the mode there is for a panel with the text view, which needs an open link. The panel that is shown
/// next takes the place of another.
void ModeMachine::LeaveForTextPanel() {
  StopTimers();
  p_.layout.HideConnectPanels();
  CloseTrace();
  if (p_.main.mode == ModemMode::TestInterface) p_.link.WriteText(kLeaveTestShell);
  if (p_.main.mode == ModemMode::Terminal) LeaveTerminal();
}

void ModeMachine::OpenDeviceManager() {
  if (deviceManagerBusy_) return;
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  Begin([this, wasTerminal] {
    {
      const ScopedFlag busy(deviceManagerBusy_);
      LeaveForWindow();
      UpdateModeMenu();
      TakeOffline(Farewell::Cancel);  // once more; it does no harm and is meant
      p_.main.mode = ModemMode::DeviceManager;
      frmDev(p_.window).ShowModal();
    }
    ReturnToTerminal(wasTerminal);
  });
}

void ModeMachine::OpenPhoneBook() {
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  Begin([this, wasTerminal] {
    LeaveForWindow();
    p_.main.mode = ModemMode::DeviceManager;
    UpdateModeMenu();
    TakeOffline(Farewell::Cancel);  // the mode during the book is Offline; that is meant
    frmBook(p_.window).ShowModal();
    ReturnToTerminal(wasTerminal);
  });
}

void ModeMachine::LeaveForWindow() {
  CloseTrace();
  StopTimers();
  TakeOffline(Farewell::Cancel);
  p_.link.SendCancel();
}

void ModeMachine::ReturnToTerminal(bool wasTerminal) {
  if (wasTerminal && p_.main.mode != ModemMode::Closing) state_await_tml_intro();
}

void ModeMachine::GoUpgrade() {
  Begin([this] {
    TakeOffline(Farewell::Cancel);
    p_.main.mode = ModemMode::Upgrade;
    if (!upgrade_) upgrade_.emplace(p_.window);
    upgrade_->visible = true;
  });
}

void ModeMachine::SelectMub(int mub) {
  p_.settings.config.mubselect.Set(std::to_string(mub));
  RefreshMenuMarks();
  // A connect that is on its way, or tried again from time to time, goes on to the one that is chosen now.
  const ModemMode mode = p_.main.mode;
  const bool reconnect = passage_.connects || mode == ModemMode::Terminal || mode == ModemMode::AwaitIntro ||
                         mode == ModemMode::Failed;
  p_.state.mubInfoText.clear();
  p_.link.DoubtLogin();  // at once: what replaces this logs in again too
  const auto run = [this, reconnect] {
    StopTimers();  // the watchdog would connect to the old one in the wait
    p_.link.LeaveMub();
    TakeOffline(Farewell::Cancel);
    p_.link.CloseLink();
    p_.link.ForgetLogin();
    p_.window.caption = p_.main.applicationTitle + ' ';
    p_.state.mubChanged = true;
    ReturnToTerminal(reconnect);
  };
  Begin({.run = run, .connects = reconnect});
}

void ModeMachine::RefreshMenuMarks() {
  TermControls& window = p_.window;
  const auto& config = p_.settings.config;
  if (!config.erbaccess.Get() && !config.lan.Get()) {
    window.mnuTelnet.visible = false;
  } else {
    window.mnuPort.visible = true;
  }
  const std::string selected = config.mubselect.Get();
  window.mnuMasterONMaster.checked = selected == "0";
  window.mnuSlaveONMaster.checked = selected == "1";
  window.mnuMasterONSlave.checked = selected == "2";
  window.mnuSlaveONSlave.checked = selected == "3";
}

void ModeMachine::Watchdog() {
  // A second question would come over the one that is being answered.
  if (p_.link.AsksPassword()) return;
  // A failed connect is tried again whatever the line says: a key may have opened it to a modem that talks
  // on.
  if (p_.main.rxSeen && p_.main.mode != ModemMode::Failed) {
    EndTick();
  } else if (!reconnecting_) {
    Begin([this] {
      const ScopedFlag reconnecting(reconnecting_);
      p_.link.CloseLink();
      p_.platform.comPort.Open();  // over the LAN too, where it is of no use and does no harm
      p_.platform.comPort.DiscardInput();
      ShowPopUp(p_.window, "Trying to connect");
      ResetScreen();
      Connect();
      EndTick();
    });
  }
}

void ModeMachine::EndTick() {
  p_.main.rxSeen = false;
  p_.window.caption = WindowCaption(p_.main, p_.state.mubInfoText);
}

void ModeMachine::LeavePanel() {
  switch (p_.main.mode) {
    case ModemMode::PortSetup:
    case ModemMode::Failed:  // a wrong line speed has led to the panel
      p_.window.fmOnTab[kPortPanel].visible = false;
      break;
    case ModemMode::TestInterface:
      p_.window.fmOnTab[kTestPanel].visible = false;
      p_.link.WriteText("quit\r\n");
      p_.link.SendCancel();
      Pause(p_.window.loop(), 0.005);
      break;
    case ModemMode::AtMode:
      p_.window.fmOnTab[kAtPanel].visible = false;
      p_.window.tmrRepeater.enabled = false;  // a line sent while the link closes would open it anew
      break;
    default:
      break;
  }
}

void ModeMachine::LeaveTerminal() {
  const ScopedFlag leaving(p_.main.leaving);
  p_.link.SendCancel();
  ClearSession();
  p_.link.SendCancel();
}

void ModeMachine::ReturnFromPanel() {
  if (p_.main.tagSession) {
    state_await_tml_intro();
  } else {
    ShutDown();
  }
}

void ModeMachine::ResetScreen() {
  p_.grid.ResetScreenModel();
  p_.main.rowsFrozen = false;  // by a walk of the modem's cursor, whose timer may never fire now
  p_.main.screenHold = false;
}

/// Forgets what an earlier session has changed and nobody has shown. What it has printed is the user's.
void ModeMachine::DropChanges() {
  ChangeFlags& flags = p_.state;
  ChangeFlags kept;
  kept.mubChanged = flags.mubChanged;  // the choice of another modem is to be shown
  kept.printStart = flags.printStart;
  kept.printData = flags.printData;
  kept.printEnd = flags.printEnd;
  flags = kept;
}

void ModeMachine::ClearScreen() {
  ResetScreen();
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
  ShowSoftKeys(p_.window, p_.main, p_.state, p_.settings);
}

void ModeMachine::CloseTrace() {
  const EventLoop::Wait wait(p_.window.loop());
  if (closeTrace) closeTrace();
  wait.Check();
}

void ModeMachine::ShowTextPanel(std::size_t panel) {
  TermControls& window = p_.window;
  p_.received.DiscardRx();  // what came while nobody looked
  window.pointer = Pointer::Normal;
  window.txtRx.SetText({});
  window.txtRx.visible = true;
  p_.layout.ShowPanel(panel);
  p_.layout.HideLists();
  p_.layout.FocusScreen();
}

void ModeMachine::StopTimers() {
  for (Control* control : p_.window.controls()) {
    if (dynamic_cast<Timer*>(control) != nullptr) control->enabled = false;
  }
  ClearPopUp(p_.window);
  if (!p_.main.rowsFrozen) return;
  p_.main.rowsFrozen = false;
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
}

void ModeMachine::UpdateModeMenu() {
  const ModemMode mode = p_.main.mode;
  p_.window.mnuTerminal.checked = mode == ModemMode::Terminal;
  p_.window.mnuTest.checked = mode == ModemMode::TestInterface;
  p_.window.mnuAT.checked = mode == ModemMode::AtMode;
  p_.window.mnuPort.checked = mode == ModemMode::PortSetup;
}

}  // namespace corvex
