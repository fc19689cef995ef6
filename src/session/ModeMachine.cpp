#include "session/ModeMachine.h"

#include <string>

#include "book/frmBook.h"
#include "common/ScopedFlag.h"
#include "common/Text.h"
#include "devices/frmDev.h"
#include "panels/modRawCmds.h"
#include "session/PopUp.h"
#include "session/RowPainter.h"
#include "session/SoftKeyPanel.h"

namespace corvex {

namespace {

constexpr std::string_view kRepaint = "\x1B\x12\x1B";
constexpr std::string_view kLeaveTestShell = "quit\r\nat\r\n";
constexpr std::size_t kPortPanel = 0;
constexpr std::size_t kTestPanel = 1;
constexpr std::size_t kAtPanel = 4;

}  // namespace

Overtaken ModeMachine::BeginPassage() {
  ++p_.main.passage;
  return Overtaken(p_.main);
}

void ModeMachine::ConnectProbe() {
  const Overtaken overtaken = BeginPassage();
  TermControls& window = p_.window;
  MainState& main = p_.main;
  p_.layout.HideTextView();
  p_.layout.HideConnectPanels();
  ClearScreen();
  window.frmKeys.visible = true;
  p_.link.CloseLink();
  if (overtaken()) return;
  window.pointer = Pointer::Hourglass;
  const ProbeWord word = p_.probe.DetectModem();
  if (overtaken() || main.mode == ModemMode::Closing) return;
  window.pointer = Pointer::Normal;
  switch (word) {
    case ProbeWord::Ok:
      // Over the LAN, where the port is closed, a failure shows nothing and changes nothing.
      EnterByTagMode(overtaken, p_.platform.comPort.PortOpen());
      break;
    case ProbeWord::Busy:
      if (window.visible) ShowPopUp(window, "Port is busy - check running applications");
      break;
    case ProbeWord::None:
      if (!window.visible) break;
      p_.platform.dialogs.MessageBox("No contact - please check connections");
      if (overtaken()) break;
      window.tmrWatchdog.enabled = true;
      main.mode = ModemMode::Failed;
      break;
    case ProbeWord::CheckSpeed:
      if (!window.visible) break;
      // Nothing is detected in spite of the wording: the user is led to the port settings.
      if (p_.platform.dialogs.AskYesNo("Bad response - try and autodetect modem?") && !overtaken()) {
        EnterPortSetup();
        if (main.mode == ModemMode::PortSetup) main.mode = ModemMode::Failed;  // else it was overtaken
      }
      break;
  }
}

void ModeMachine::state_await_tml_intro() {
  const Overtaken overtaken = BeginPassage();
  TermControls& window = p_.window;
  LeavePanel();
  if (overtaken()) return;
  p_.link.CloseLink();
  if (overtaken()) return;
  p_.layout.HideTextView();
  p_.main.mode = ModemMode::AwaitIntro;
  UpdateModeMenu();
  p_.received.ClearRx();
  p_.layout.ShowCompactWindow();
  p_.layout.FocusScreen();
  window.frmNav.BringToFront();
  window.frmKeys.visible = true;
  window.pointer = Pointer::Hourglass;
  const ProbeWord word = p_.probe.DetectModem();
  if (overtaken()) return;
  if (word != ProbeWord::Busy)
    window.pointer = Pointer::Normal;  // it stays busy with the port; that is meant
  switch (word) {
    case ProbeWord::Ok:
      EnterByTagMode(overtaken, true);
      break;
    case ProbeWord::None:
      ShowPopUp(window, "No response.|Check connection to modem");
      window.tmrWatchdog.enabled = true;  // whoever comes from Offline finds it stopped
      p_.main.mode = ModemMode::Failed;
      break;
    case ProbeWord::CheckSpeed:
      ShowPopUp(window,
                "Invalid response at " + p_.platform.comPort.Settings() + "|Check parameters and try again");
      break;
    case ProbeWord::Busy:
      break;
  }
}

void ModeMachine::EnterByTagMode(const Overtaken& overtaken, bool tellsFailure) {
  p_.main.rxSeen = false;
  if (p_.link.EnterTagMode()) {
    EnterTerminalMode();
    return;
  }
  if (!tellsFailure || overtaken()) return;
  if (!TakeOffline(overtaken)) return;
  p_.link.CloseLink();
  ShowPopUp(p_.window, "No Valid Response");  // last, as going offline clears what stands there
}

void ModeMachine::EnterTerminalMode() {
  const Overtaken overtaken(p_.main);
  p_.window.tmrWatchdog.enabled = true;
  ResetScreen();
  p_.link.WriteText(kRepaint);
  if (p_.window.Active()) p_.window.CorvexFocus1.SetFocus();
  p_.main.mode = ModemMode::Terminal;
  p_.main.tagSession = true;
  UpdateModeMenu();
  Pause(p_.window.loop(), 0.2);
  if (overtaken()) return;
  p_.link.WriteText(kRepaint);  // twice; that is meant
  ShowPortLabel();
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

void ModeMachine::GoOffline() {
  TakeOffline(BeginPassage());
}

void ModeMachine::Disconnect() {
  const Overtaken overtaken = BeginPassage();
  StopTimers();  // before the first wait, in which the watchdog would connect anew
  p_.link.CloseLink();
  if (!overtaken()) TakeOffline(overtaken);
}

void ModeMachine::ShutDown() {
  if (TakeOffline(BeginPassage())) p_.link.CloseLink();
}

/// False if it was overtaken on the way.
bool ModeMachine::TakeOffline(const Overtaken& overtaken) {
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  CloseTrace();
  if (overtaken()) return false;
  EndSession();
  if (p_.main.mode == ModemMode::Terminal) {
    p_.link.SendCancel();
    if (overtaken()) return false;
    EndSession();  // what the modem has still said is shown no more
  }
  window.pointer = Pointer::Normal;  // of a probe that was left
  p_.layout.HideLists();
  PaintRows(window, p_.main, p_.state, p_.grid);
  ShowSoftKeys(window, p_.main, p_.state, p_.settings);
  window.frmAux.visible = false;
  p_.layout.ShowCompactWindow();
  p_.layout.HideTextView();
  window.frmNav.visible = true;
  window.frmNav.BringToFront();
  p_.layout.FocusScreen();  // and not to whatever comes behind a list or a panel that is gone
  p_.main.rxSeen = false;
  p_.main.mode = ModemMode::Offline;
  UpdateModeMenu();
  return true;
}

void ModeMachine::EndSession() {
  TermControls& window = p_.window;
  ResetScreen();
  StopTimers();
  window.lblsim.visible = false;
  window.corvexLbl[TermControls::kSignal].visible = false;
  window.lblTemp.visible = false;
  window.lblTempPsu.visible = false;
  p_.main.tagSession = false;
}

void ModeMachine::EnterPortSetup() {
  const Overtaken overtaken = BeginPassage();
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  CloseTrace();
  if (overtaken()) return;
  p_.portPanel.ShowRoute();
  StopTimers();
  switch (p_.main.mode) {
    case ModemMode::PortSetup:
      window.fmOnTab[kPortPanel].visible = false;
      ReturnFromPanel(overtaken);
      return;
    case ModemMode::TestInterface:
      window.fmOnTab[kTestPanel].visible = false;
      if (p_.link.EnsureLinkOpen()) p_.link.WriteText(kLeaveTestShell);
      break;
    case ModemMode::AtMode:
      window.fmOnTab[kAtPanel].visible = false;
      break;
    case ModemMode::Terminal:
      p_.main.tagSession = true;
      p_.link.SendCancel();
      if (!overtaken()) ClearScreen();  // its keys lead nowhere now
      break;
    default:
      break;
  }
  if (overtaken()) return;
  p_.main.rxSeen = false;
  p_.link.CloseLink();
  if (overtaken()) return;
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
  if (!p_.link.EnsureLinkOpen()) return;
  const Overtaken overtaken = BeginPassage();
  const bool leaving = p_.main.mode == ModemMode::TestInterface;
  LeaveForTextPanel(overtaken);
  if (overtaken()) return;
  if (leaving) {
    p_.window.fmOnTab[kTestPanel].visible = false;
    ReturnFromPanel(overtaken);
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
}

void ModeMachine::EnterAtMode() {
  if (!p_.link.EnsureLinkOpen()) return;
  const Overtaken overtaken = BeginPassage();
  const bool leaving = p_.main.mode == ModemMode::AtMode;
  LeaveForTextPanel(overtaken);
  if (overtaken()) return;
  if (leaving) {
    p_.window.fmOnTab[kAtPanel].visible = false;
    p_.window.frmKeys.visible = true;
    ReturnFromPanel(overtaken);
    return;
  }
  p_.main.rxSeen = false;
  ShowTextPanel(kAtPanel);
  p_.main.mode = ModemMode::AtMode;
  UpdateModeMenu();
  PauseShort(p_.window.loop());
  if (overtaken()) return;
  AtPanel& panel = p_.window.atPanel;
  FocusAtPanel(p_.window);
  if (!panel.optAutoSend.value) p_.window.defaultButton = &panel.cmdRawBytes;  // else Enter is to be sent
}

/// Leaves the mode there is for a panel with the text view, which needs an open link. The panel that is shown
/// next takes the place of another.
void ModeMachine::LeaveForTextPanel(const Overtaken& overtaken) {
  StopTimers();
  p_.layout.HideConnectPanels();
  CloseTrace();
  if (overtaken()) return;
  if (p_.main.mode == ModemMode::TestInterface) p_.link.WriteText(kLeaveTestShell);
  if (p_.main.mode == ModemMode::Terminal) LeaveTerminal();
}

void ModeMachine::OpenDeviceManager() {
  if (deviceManagerBusy_) return;
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  {
    const ScopedFlag busy(deviceManagerBusy_);
    const Overtaken overtaken = BeginPassage();
    CloseTrace();
    if (overtaken()) return;
    StopTimers();
    if (!TakeOffline(overtaken)) return;
    p_.link.SendCancel();
    if (overtaken()) return;
    UpdateModeMenu();
    TakeOffline(overtaken);  // once more; it does no harm and is meant
    p_.main.mode = ModemMode::DeviceManager;
    frmDev(p_.window).ShowModal();
  }
  ReturnToTerminal(wasTerminal);
}

void ModeMachine::OpenPhoneBook() {
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  const Overtaken overtaken = BeginPassage();
  CloseTrace();
  if (overtaken()) return;
  StopTimers();
  if (!TakeOffline(overtaken)) return;
  p_.link.SendCancel();
  if (overtaken()) return;
  p_.main.mode = ModemMode::DeviceManager;
  UpdateModeMenu();
  TakeOffline(overtaken);  // the mode during the book is Offline; that is meant
  frmBook(p_.window).ShowModal();
  ReturnToTerminal(wasTerminal);
}

void ModeMachine::ReturnToTerminal(bool wasTerminal) {
  if (wasTerminal && p_.main.mode != ModemMode::Closing) state_await_tml_intro();
}

void ModeMachine::GoUpgrade() {
  if (!TakeOffline(BeginPassage())) return;
  p_.main.mode = ModemMode::Upgrade;
  if (!upgrade_) upgrade_.emplace(p_.window);
  upgrade_->visible = true;
}

void ModeMachine::SelectMub(int mub) {
  p_.settings.config.mubselect.Set(std::to_string(mub));
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  p_.state.mubInfoText.clear();
  const Overtaken overtaken = BeginPassage();
  StopTimers();  // the watchdog would connect to the old one in the wait
  p_.link.LeaveMub();
  if (overtaken() || !TakeOffline(overtaken)) return;
  p_.link.CloseLink();
  if (overtaken()) return;
  p_.link.ForgetLogin();
  RefreshMenuMarks();
  p_.window.caption = p_.main.applicationTitle + ' ';
  p_.state.mubChanged = true;
  ReturnToTerminal(wasTerminal);
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
  if (!p_.main.rxSeen || p_.main.mode == ModemMode::Failed) {
    const Overtaken overtaken = BeginPassage();
    p_.link.CloseLink();
    if (overtaken()) return;
    p_.platform.comPort.Open();  // over the LAN too, where it is of no use and does no harm
    p_.platform.comPort.DiscardInput();
    ShowPopUp(p_.window, "Trying to connect");
    ResetScreen();
    state_await_tml_intro();
  }
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
  const Overtaken overtaken(p_.main);
  p_.link.SendCancel();
  if (overtaken()) return;
  ClearScreen();
  p_.link.SendCancel();
}

void ModeMachine::ReturnFromPanel(const Overtaken& overtaken) {
  if (overtaken()) return;
  if (p_.main.tagSession) {
    state_await_tml_intro();
  } else if (TakeOffline(overtaken)) {
    p_.link.CloseLink();
  }
}

void ModeMachine::ResetScreen() {
  p_.grid.ResetScreenModel();
  p_.main.rowsFrozen = false;  // by a walk of the modem's cursor, whose timer may never fire now
  p_.main.screenHold = false;
}

void ModeMachine::ClearScreen() {
  ResetScreen();
  PaintRows(p_.window, p_.main, p_.state, p_.grid);
  ShowSoftKeys(p_.window, p_.main, p_.state, p_.settings);
}

void ModeMachine::CloseTrace() {
  if (closeTrace) closeTrace();
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
