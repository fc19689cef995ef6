#pragma once

#include <string>
#include <string_view>

#include "base/Text.h"
#include "link/modComSock.h"
#include "platform/EventLoop.h"

namespace corvex {

/// What the device manager writes to the terminal.
///
/// After End nothing can be written: Write and Check throw WaitAbandoned. An exchange that was held up by a
/// message box or an editor while the window closed therefore stops at that point.
class SessionOutput {
 public:
  explicit SessionOutput(TerminalLink& link) : link_(link) {}

  void Write(std::string_view bytes) {
    Check();
    link_.WriteText(bytes);
  }
  /// Writes a command. `command` has no line end.
  void WriteLine(std::string_view command) { Write(std::string(command) + std::string(kCrLf)); }
  void Check() const {
    if (ended_) throw WaitAbandoned{};
  }
  void End() { ended_ = true; }

 private:
  TerminalLink& link_;
  bool ended_ = false;
};

}  // namespace corvex
