#pragma once

#include <utility>

#include "link/modComSock.h"
#include "platform/EventLoop.h"
#include "state/MainState.h"

namespace corvex {

/// A procedure that leads from one mode of the main window into another. It may wait on its way.
struct Passage {
  EventLoop::Task run;
  EventLoop::Task interrupted = {};  ///< Runs again if `run` changes nothing. May be empty.
  bool connects = false;             ///< The passage ends in the modem's menus if the modem answers.
};

/// Starts the passages, of which one at most is under way.
///
/// A passage that begins makes every wait on the stack give up, and runs once the stack has unwound. So the
/// last of several clicks counts, and the passages that it replaces send nothing more to the modem.
class Passages {
 public:
  Passages(EventLoop& loop, MainState& main, TerminalLink& link) : loop_(loop), main_(main), link_(link) {}

  void Begin(EventLoop::Task run) { Begin(Passage{std::move(run)}); }
  void Begin(const Passage& passage);

  /// Begins a passage that needs the link, which it opens first. If the link cannot be opened, the passage
  /// that was interrupted runs again.
  void BeginOnLink(EventLoop::Task run);

  /// Whether the passage under way connects to the modem.
  bool Connecting() const { return underWay_.connects; }

 private:
  EventLoop& loop_;
  MainState& main_;
  TerminalLink& link_;
  Passage underWay_;  ///< Empty when no passage is under way.
};

}  // namespace corvex
