#pragma once

#include "base/ScopedFlag.h"
#include "link/modComSock.h"
#include "state/MainState.h"

namespace corvex {

/// Gives the service panels access to the link.
class PanelLink {
 public:
  PanelLink(TerminalLink& link, const MainState& main) : link_(link), main_(main) {}

  /// Opens the link if it is closed, which may take seconds. Returns true if the panel may send. Returns
  /// false if the link cannot be opened, or if `panel` is not the current mode before or after the wait. Also
  /// returns false while another call waits: the user has clicked again because nothing has happened yet.
  bool Ready(ModemMode panel) {
    if (main_.mode != panel || opening_) return false;
    const ScopedFlag opening(opening_);
    return link_.EnsureLinkOpen() && main_.mode == panel;
  }
  void WriteText(std::string_view text) { link_.WriteText(text); }

 private:
  TerminalLink& link_;
  const MainState& main_;
  bool opening_ = false;
};

}  // namespace corvex
