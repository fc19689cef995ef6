#include "session/ModeMachine.h"

#include <string>

#include "base/ScopedFlag.h"
#include "book/frmBook.h"
#include "session/MenuMarks.h"
#include "window/PopUp.h"

namespace corvex {

namespace {

constexpr std::string_view kRepaint = "\x1B\x12\x1B";

}  // namespace

void ModeMachine::ConnectProbe() {
  p_.passages.Begin([this] { FirstConnect(); });
}

void ModeMachine::FirstConnect() {
  TermControls& window = p_.window;
  MainState& main = p_.main;
  p_.layout.HideTextView();
  p_.layout.HideConnectPanels();
  p_.reset.ClearScreen();
  window.frmKeys.visible = true;
  p_.link.CloseLink();
  const ProbeWord word = Probe();
  if (main.mode == ModemMode::Closing) return;
  switch (word) {
    case ProbeWord::Ok:
      // Over the LAN the serial port is closed. A failure then shows nothing and changes nothing.
      EnterByTagMode(p_.comPort.PortOpen());
      break;
    case ProbeWord::Busy:
      if (window.visible) ShowPopUp(window, "Port is busy - check running applications");
      break;
    case ProbeWord::None:
      if (!window.visible) break;
      p_.dialogs.MessageBox("No contact - please check connections");
      AwaitWatchdog();
      break;
    case ProbeWord::CheckSpeed:
      if (!window.visible) break;
      // Intentional: nothing is detected, whatever the question says. The port settings are shown instead.
      if (p_.dialogs.AskYesNo("Bad response - try and autodetect modem?")) {
        p_.panels.ShowPortSetup();
        main.mode = ModemMode::Failed;
      }
      break;
  }
}

void ModeMachine::state_await_tml_intro() {
  p_.passages.Begin({.run = [this] { Connect(); }, .connects = true});
}

void ModeMachine::Connect() {
  TermControls& window = p_.window;
  p_.panels.LeavePanel();
  p_.link.CloseLink();
  p_.layout.HideTextView();
  p_.main.mode = ModemMode::AwaitIntro;
  MarkMode(p_.window, p_.main.mode);
  p_.received.ClearRx();
  p_.reset.ClearSession();
  p_.layout.ShowCompactWindow();
  p_.layout.FocusScreen();
  window.frmNav.BringToFront();
  window.frmKeys.visible = true;
  switch (Probe()) {
    case ProbeWord::Ok:
      EnterByTagMode(true);
      break;
    case ProbeWord::None:
    case ProbeWord::Busy:  // the LAN address cannot be used
      ShowPopUp(window, "No response.|Check connection to modem");
      AwaitWatchdog();  // its timer may be off, since going offline stops it
      break;
    case ProbeWord::CheckSpeed:
      ShowPopUp(window, "Invalid response at " + p_.comPort.Settings() + "|Check parameters and try again");
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

/// Leaves the next attempt to connect to the watchdog.
void ModeMachine::AwaitWatchdog() {
  p_.main.mode = ModemMode::Failed;
  p_.window.pointer = Pointer::Normal;
  p_.window.tmrWatchdog.enabled = true;
}

void ModeMachine::EnterByTagMode(bool showsFailure) {
  p_.main.rxSeen = false;
  if (p_.link.EnterTagMode()) {
    EnterTerminalMode();
    return;
  }
  if (!showsFailure) return;
  TakeOffline(Farewell::Cancel);
  p_.link.CloseLink();
  ShowPopUp(p_.window, "No Valid Response");  // last, since TakeOffline clears the popup
}

void ModeMachine::EnterTerminalMode() {
  p_.window.tmrWatchdog.enabled = true;
  p_.reset.DropChanges();
  p_.reset.ResetScreen();
  p_.link.WriteText(kRepaint);
  if (p_.window.Active()) p_.window.CorvexFocus1.SetFocus();
  p_.main.mode = ModemMode::Terminal;
  p_.main.tagSession = true;
  MarkMode(p_.window, p_.main.mode);
  Pause(p_.window.loop(), 0.2);
  p_.link.WriteText(kRepaint);  // intentionally sent twice
  ShowPortLabel();
  p_.silence.Watch();
  p_.trace.SessionOpened();
}

void ModeMachine::ShowPortLabel() {
  Label& label = p_.window.lblPort;
  if (p_.link.LinkIsLan()) {
    const SocketControl& sock = p_.sock;
    label.caption = "LAN";
    label.toolTip = "Local address " + sock.LocalAddress() + " server " + sock.RemoteHost() + " port " +
                    std::to_string(sock.RemotePort());
  } else {
    label.caption = "COM" + std::to_string(p_.comPort.CommPort());
    label.toolTip = " access is via serial port";
  }
}

/// Ends the session on a link that is open; never opens the link for this. Over a serial port, in the mode
/// Terminal, sends CAN. Over the LAN, CloseLink sends what is needed.
void ModeMachine::Disconnect() {
  p_.passages.Begin([this] {
    p_.reset.StopTimers();  // before the first wait, in which the watchdog could connect again
    {
      const ScopedFlag leaving(p_.main.leaving);
      const bool serial = !p_.link.LinkIsLan() && p_.comPort.PortOpen();
      if (serial && p_.main.mode == ModemMode::Terminal) p_.link.SendCancel();
      p_.link.CloseLink();
    }
    TakeOffline(Farewell::None);
  });
}

void ModeMachine::ShutDown() {
  p_.passages.Begin([this] {
    TakeOffline(Farewell::Cancel);
    p_.link.CloseLink();
  });
}

/// Ends the session and enters the mode Offline. Does not close the link.
void ModeMachine::TakeOffline(Farewell farewell) {
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  p_.reset.CloseTrace();
  p_.reset.StopTimers();
  p_.reset.ClearSession();
  p_.main.tagSession = false;
  if (p_.main.mode == ModemMode::Terminal && farewell == Farewell::Cancel) {
    const ScopedFlag leaving(p_.main.leaving);
    p_.link.SendCancel();
  }
  window.pointer = Pointer::Normal;  // an abandoned probe may have left the hourglass
  window.frmAux.visible = false;
  p_.layout.ShowCompactWindow();
  p_.layout.HideTextView();
  window.frmNav.visible = true;
  window.frmNav.BringToFront();
  p_.layout.FocusScreen();  // the control that had the focus may have been hidden
  p_.main.rxSeen = false;
  p_.main.mode = ModemMode::Offline;
  MarkMode(p_.window, p_.main.mode);
}

void ModeMachine::ReturnFromPanel() {
  if (p_.main.tagSession) {
    state_await_tml_intro();
  } else {
    ShutDown();
  }
}

void ModeMachine::OpenDeviceManager() {
  if (deviceManagerBusy_) return;
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  p_.passages.Begin([this, wasTerminal] {
    {
      const ScopedFlag busy(deviceManagerBusy_);
      LeaveForWindow();
      MarkMode(p_.window, p_.main.mode);
      TakeOffline(Farewell::Cancel);  // intentionally repeated
      p_.main.mode = ModemMode::DeviceManager;
      ShowDeviceManager();
    }
    ReturnToTerminal(wasTerminal);
  });
}

void ModeMachine::ShowDeviceManager() {
  /// Destroys the window when it has closed, and when the program ends.
  struct Closed {
    std::optional<frmDev>& window;
    ~Closed() { window.reset(); }
  };
  const Closed closed{deviceManager_};
  deviceManager_
      .emplace(p_.window, frmDev::Parts{.platform = p_.platform,
                                        .settings = p_.settings,
                                        .main = p_.main,
                                        .model = p_.state.terminalModel,
                                        .link = p_.link,
                                        .received = p_.received,
                                        .page = p_.page})
      .Open();
}

void ModeMachine::LeaveWindows() {
  if (deviceManager_) deviceManager_->Farewell();
}

void ModeMachine::OpenPhoneBook() {
  const bool wasTerminal = p_.main.mode == ModemMode::Terminal;
  p_.passages.Begin([this, wasTerminal] {
    LeaveForWindow();
    p_.main.mode = ModemMode::DeviceManager;
    MarkMode(p_.window, p_.main.mode);
    TakeOffline(Farewell::Cancel);  // intentional: the mode while the book is open is Offline
    frmBook(p_.window).ShowModal();
    ReturnToTerminal(wasTerminal);
  });
}

void ModeMachine::LeaveForWindow() {
  p_.reset.CloseTrace();
  p_.reset.StopTimers();
  TakeOffline(Farewell::Cancel);
  p_.link.SendCancel();
}

void ModeMachine::ReturnToTerminal(bool wasTerminal) {
  if (wasTerminal && p_.main.mode != ModemMode::Closing) state_await_tml_intro();
}

void ModeMachine::GoUpgrade() {
  p_.passages.Begin([this] {
    TakeOffline(Farewell::Cancel);
    p_.main.mode = ModemMode::Upgrade;
    if (!upgrade_) upgrade_.emplace(p_.window);
    upgrade_->visible = true;
  });
}

void ModeMachine::SelectMub(int mub) {
  p_.settings.config.mubselect.Set(std::to_string(mub));
  MarkRoute(p_.window, p_.settings);
  // If a connect is in progress or the watchdog is about to repeat it, it continues with the chosen MUB.
  const ModemMode mode = p_.main.mode;
  const bool reconnect = p_.passages.Connecting() || mode == ModemMode::Terminal ||
                         mode == ModemMode::AwaitIntro || mode == ModemMode::Failed;
  p_.state.mubInfoText.clear();
  p_.link.DoubtLogin();  // not in `run`: a passage that replaces this one must log in again too
  const auto run = [this, reconnect] {
    p_.reset.StopTimers();  // the watchdog could connect to the old MUB during the wait
    p_.link.LeaveMub();
    TakeOffline(Farewell::Cancel);
    p_.link.CloseLink();
    p_.link.ForgetLogin();
    p_.window.caption = p_.main.applicationTitle + ' ';
    p_.state.mubChanged = true;
    ReturnToTerminal(reconnect);
  };
  p_.passages.Begin({.run = run, .connects = reconnect});
}

void ModeMachine::Watchdog() {
  // A reconnect would ask for the password again while the user is answering the first question.
  if (p_.link.AsksPassword()) return;
  // In the mode Failed bytes do not prove a session: a key may have opened the link to a modem that is
  // sending.
  if (p_.main.rxSeen && p_.main.mode != ModemMode::Failed) {
    EndTick();
  } else if (!reconnecting_) {
    p_.passages.Begin([this] {
      const ScopedFlag reconnecting(reconnecting_);
      p_.link.CloseLink();
      p_.comPort.Open();  // over the LAN too, where it has no effect
      p_.comPort.DiscardInput();
      ShowPopUp(p_.window, "Trying to connect");
      p_.reset.ResetScreen();
      Connect();
      EndTick();
    });
  }
}

void ModeMachine::EndTick() {
  p_.main.rxSeen = false;
  p_.window.caption = WindowCaption(p_.main, p_.state.mubInfoText);
}

}  // namespace corvex
