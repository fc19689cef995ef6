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
  /// false if the link cannot be opened, or if `panel` is not the current mode, which can also change during
  /// the wait. Returns false while an earlier call waits, because the user then clicks a second time.
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
