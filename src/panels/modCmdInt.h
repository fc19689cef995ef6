#pragma once

#include <string>

#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// The test interface: one line of eight fields, set up from the panel, makes the modem's test shell send or
/// receive on a channel until it is stopped.
class TestInterface {
 public:
  TestInterface(const Platform& platform, TermControls& window, PanelLink& link)
      : platform_(platform), panel_(window.testPanel), link_(link) {}
  void Connect();

  /// The line for what the panel shows; empty, and the user has been told, if that makes none.
  std::string BuildTestCommand();

 private:
  void Execute();

  const Platform& platform_;
  TestPanel& panel_;
  PanelLink& link_;
  bool running_ = false;
};

}  // namespace corvex
