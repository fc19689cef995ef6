#pragma once

#include "base/ScopedFlag.h"
#include "link/modComSock.h"
#include "state/MainState.h"

namespace corvex {

/// What the service panels go through before they send.
class PanelLink {
 public:
  PanelLink(TerminalLink& link, const MainState& main) : link_(link), main_(main) {}

  /// Opens the link if need be, which may take seconds. False if it cannot be, if the panel's mode is not on
  /// or is left meanwhile, and for what is clicked while another click waits: the user has clicked again
  /// because nothing happened.
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
