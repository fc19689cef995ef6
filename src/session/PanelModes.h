#pragma once

#include <cstddef>

#include "base/Event.h"
#include "link/modComSock.h"
#include "panels/PortPanel.h"
#include "session/Passages.h"
#include "session/SessionReset.h"
#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/ReceiveBuffer.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// Enters and leaves the modes of the service panels, which are port setup, test interface and AT mode, and
/// sends the modem what each change requires.
class PanelModes {
 public:
  struct Parts {
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    PortPanel& portPanel;
    MainState& main;
    ReceiveBuffer& received;
    TerminalLink& link;
    Passages& passages;
    SessionReset& reset;
  };

  explicit PanelModes(const Parts& parts) : p_(parts) {}

  // Each function is a toggle: if its mode is the current one, it leaves that mode.
  void EnterPortSetup();
  void EnterTestInterface();
  void EnterAtMode();

  /// Enters or leaves the port setup within the current passage.
  void ShowPortSetup();
  /// Hides the panel of the current mode and ends its exchange with the modem. The link stays open.
  void LeavePanel();

  /// Called when a mode has been left by its own toggle. No other mode has been entered yet.
  Event<> left;

 private:
  void LeaveForTextPanel();
  void LeaveTerminal();
  void ShowTextPanel(std::size_t panel);
  void FocusAtMode();

  Parts p_;
};

}  // namespace corvex
