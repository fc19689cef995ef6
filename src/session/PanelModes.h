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

/// Enters and leaves the modes of the service panels: port setup, test interface and AT mode. Defines what is
/// sent to the modem on each change.
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

  /// The work of EnterPortSetup without a passage of its own, for use in a passage that is under way.
  void ShowPortSetup();
  /// Hides the panel of the current mode and ends its exchange with the modem. The link stays open.
  void LeavePanel();

  /// Raised when a panel's mode has been left by its own toggle and no other mode has been entered yet.
  Event<> left;

 private:
  void LeaveForTextPanel();
  void LeaveTerminal();
  void ShowTextPanel(std::size_t panel);
  void FocusAtMode();

  Parts p_;
};

}  // namespace corvex
