#pragma once

#include <string>

#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// The test interface. It builds a line of eight fields from the panel. The line makes the modem's test shell
/// send or receive on a channel until it is stopped.
class TestInterface {
 public:
  TestInterface(const Platform& platform, TermControls& window, PanelLink& link)
      : platform_(platform), panel_(window.testPanel), link_(link) {}
  void Connect();

  /// Returns the command line for the panel's values. If a value is invalid, signals this to the user and
  /// returns an empty text.
  std::string BuildTestCommand();

 private:
  void Execute();

  const Platform& platform_;
  TestPanel& panel_;
  PanelLink& link_;
  bool running_ = false;
};

}  // namespace corvex
