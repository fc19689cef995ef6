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

/// The modes of the service panels: port setup, test interface and AT mode. How each is entered and left, and
/// what the modem is sent on the way.
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

  // Each is a toggle: if its own mode is on, it leaves that mode.
  void EnterPortSetup();
  void EnterTestInterface();
  void EnterAtMode();

  /// The port setup as a part of a passage that is under way.
  void ShowPortSetup();
  /// Hides the panel of the current mode and ends its dialogue with the modem. The link stays open.
  void LeavePanel();

  /// A mode has been left by its own toggle, and no other has been entered yet.
  Event<> left;

 private:
  void LeaveForTextPanel();
  void LeaveTerminal();
  void ShowTextPanel(std::size_t panel);
  void FocusAtMode();

  Parts p_;
};

}  // namespace corvex
