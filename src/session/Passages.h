#pragma once

#include <utility>

#include "link/modComSock.h"
#include "platform/EventLoop.h"
#include "state/MainState.h"

namespace corvex {

/// A procedure that changes the mode of the main window, and may wait for the modem.
struct Passage {
  EventLoop::Task run;
  /// The passage that this one has interrupted. Runs again if the link cannot be opened. May be empty.
  EventLoop::Task interrupted = {};
  bool connects = false;  ///< The passage ends in the modem's menus if the modem answers.
};

/// Starts passages. At most one passage is under way at a time.
///
/// When a passage begins, every wait on the stack is abandoned (see EventLoop::AbandonWaits). The passage
/// runs once the waits have unwound. Only the last of several clicks therefore takes effect, and the passages
/// that were replaced send nothing more to the modem.
class Passages {
 public:
  Passages(EventLoop& loop, MainState& main, TerminalLink& link) : loop_(loop), main_(main), link_(link) {}

  void Begin(EventLoop::Task run) { Begin(Passage{std::move(run)}); }
  void Begin(const Passage& passage);

  /// Begins a passage that opens the link and then calls `run`. If the link cannot be opened, `run` is not
  /// called, and the passage that was interrupted runs again.
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
