#include "session/PanelModes.h"

#include "base/ScopedFlag.h"
#include "panels/modRawCmds.h"
#include "session/MenuMarks.h"

namespace corvex {

namespace {

constexpr std::string_view kLeaveTestShell = "quit\r\nat\r\n";
constexpr std::size_t kPortPanel = 0;
constexpr std::size_t kTestPanel = 1;
constexpr std::size_t kAtPanel = 4;

}  // namespace

void PanelModes::EnterPortSetup() {
  p_.passages.Begin([this] { ShowPortSetup(); });
}

void PanelModes::ShowPortSetup() {
  TermControls& window = p_.window;
  p_.layout.HideConnectPanels();
  p_.reset.CloseTrace();
  p_.portPanel.ShowRoute();
  p_.reset.StopTimers();
  switch (p_.main.mode) {
    case ModemMode::PortSetup:
      window.fmOnTab[kPortPanel].visible = false;
      left();
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
      p_.reset.ClearSession();  // the soft keys have no effect from now on
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
  MarkMode(window, p_.main.mode);
}

void PanelModes::EnterTestInterface() {
  p_.passages.BeginOnLink([this] {
    const bool leaving = p_.main.mode == ModemMode::TestInterface;
    LeaveForTextPanel();
    if (leaving) {
      p_.window.fmOnTab[kTestPanel].visible = false;
      left();
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
    MarkMode(p_.window, p_.main.mode);
  });
}

void PanelModes::EnterAtMode() {
  p_.passages.BeginOnLink([this] {
    const bool leaving = p_.main.mode == ModemMode::AtMode;
    LeaveForTextPanel();
    if (leaving) {
      p_.window.fmOnTab[kAtPanel].visible = false;
      p_.window.frmKeys.visible = true;
      left();
      return;
    }
    p_.main.rxSeen = false;
    ShowTextPanel(kAtPanel);
    p_.main.mode = ModemMode::AtMode;
    MarkMode(p_.window, p_.main.mode);
    // The mode has been entered. The pause is in a separate passage: if midnight makes that passage start
    // again, the steps above are not repeated.
    p_.passages.Begin([this] { FocusAtMode(); });
  });
}

void PanelModes::FocusAtMode() {
  PauseShort(p_.window.loop());
  AtPanel& panel = p_.window.atPanel;
  FocusAtPanel(p_.window);
  if (panel.optAutoSend.value) return;  // Enter is a character to send
  p_.window.defaultButton = &panel.cmdRawBytes;
}

/// Leaves the current mode for a panel with the text view. The link stays open.
void PanelModes::LeaveForTextPanel() {
  p_.reset.StopTimers();
  p_.layout.HideConnectPanels();
  p_.reset.CloseTrace();
  if (p_.main.mode == ModemMode::TestInterface) p_.link.WriteText(kLeaveTestShell);
  if (p_.main.mode == ModemMode::Terminal) LeaveTerminal();
}

void PanelModes::LeaveTerminal() {
  const ScopedFlag leaving(p_.main.leaving);
  p_.link.SendCancel();
  p_.reset.ClearSession();
  p_.link.SendCancel();
}

void PanelModes::ShowTextPanel(std::size_t panel) {
  TermControls& window = p_.window;
  p_.received.DiscardRx();  // discards bytes that arrived before the panel was shown
  window.pointer = Pointer::Normal;
  window.txtRx.SetText({});
  window.txtRx.visible = true;
  p_.layout.ShowPanel(panel);
  p_.layout.HideLists();
  p_.layout.FocusScreen();
}

void PanelModes::LeavePanel() {
  switch (p_.main.mode) {
    case ModemMode::PortSetup:
    case ModemMode::Failed:  // the panel is shown after a wrong line speed
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
      p_.window.tmrRepeater.enabled = false;  // a line sent during the close would open the link again
      break;
    default:
      break;
  }
}

}  // namespace corvex
