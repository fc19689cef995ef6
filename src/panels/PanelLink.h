#pragma once

#include <optional>

#include "link/modComSock.h"
#include "session/MainState.h"

namespace corvex {

/// What the service panels go through before they send.
class PanelLink {
 public:
  PanelLink(TerminalLink& link, const MainState& main) : link_(link), main_(main) {}

  /// Opens the link if need be, which may take seconds. False if it cannot be, if the panel's mode is not on
  /// or is left meanwhile, and for what is clicked while another click waits: the user has clicked again
  /// because nothing happened. A wait that has been overtaken holds nobody up, however long it lasts.
  bool Ready(ModemMode panel) {
    if (main_.mode != panel || opening_ == main_.passage) return false;
    opening_ = main_.passage;
    const Overtaken overtaken(main_);
    const bool open = link_.EnsureLinkOpen();
    if (overtaken()) return false;
    opening_.reset();
    return open && main_.mode == panel;
  }
  void WriteText(std::string_view text) { link_.WriteText(text); }

 private:
  TerminalLink& link_;
  const MainState& main_;
  std::optional<unsigned> opening_;  ///< The passage in which a click waits.
};

}  // namespace corvex
