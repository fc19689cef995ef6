#pragma once

#include <utility>

#include "link/modComSock.h"
#include "platform/EventLoop.h"
#include "state/MainState.h"

namespace corvex {

/// A change from one mode of the main window to another. It may wait before it is complete.
struct Passage {
  EventLoop::Task run;
  EventLoop::Task interrupted = {};  ///< The passage to repeat if the link cannot be opened. May be empty.
  bool connects = false;             ///< True if the passage connects to the modem and enters its menus.
};

/// Runs passages. At most one passage is current.
///
/// A new passage abandons every wait on the stack and starts when the stack has unwound. If the user clicks
/// several times, only the passage of the last click is completed. The earlier ones send nothing more to the
/// modem.
class Passages {
 public:
  Passages(EventLoop& loop, MainState& main, TerminalLink& link) : loop_(loop), main_(main), link_(link) {}

  void Begin(EventLoop::Task run) { Begin(Passage{std::move(run)}); }
  void Begin(const Passage& passage);

  /// Begins a passage that needs the link. The link is opened first. If that fails, the passage that this one
  /// has interrupted runs again.
  void BeginOnLink(EventLoop::Task run);

  /// Returns whether the current passage connects to the modem.
  bool Connecting() const { return underWay_.connects; }

 private:
  EventLoop& loop_;
  MainState& main_;
  TerminalLink& link_;
  Passage underWay_;  ///< The current passage; empty if there is none.
};

}  // namespace corvex
