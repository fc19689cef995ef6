#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

#include "link/modComSock.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "trace/frmTraceInstance.h"
#include "trace/frmTracer.h"
#include "window/TermControls.h"
#include "window/WindowLayout.h"

namespace corvex {

/// The modem's trace: which streams of it are on, and the windows that show it.
class TraceControl {
 public:
  struct Parts {
    const Platform& platform;
    SettingsStore& settings;
    TermControls& window;
    WindowLayout& layout;
    const MainState& main;
    SessionState& state;
    TerminalLink& link;
  };

  explicit TraceControl(const Parts& parts);

  /// Fills the events of the main window's menu entries.
  void Connect();

  /// A record for the master window.
  void TraceText(std::string_view text) { tracer_.TraceText(text); }
  /// A record for the window of a channel, which opens with the first one; channel 0 has none.
  void TraceToInstance(std::int32_t channel, std::string_view text);

  /// The modem's menus have been entered: it is told what has been switched on while it could not be.
  void SessionOpened();

  /// Closes the master window if it is open. It waits.
  void CloseMaster() { tracer_.Unload(); }

 private:
  void Toggle();
  void ToggleSecond();
  bool Refuses(std::string_view message) const;
  void SetEnabled(bool on);
  void TellSecond();
  void Send(char character) const;

  Parts p_;
  frmTracer tracer_;
  bool owed_ = false;        ///< Switched on while the modem could not be told.
  bool secondTold_ = false;  ///< What the modem has been told of the second stream.
  std::map<std::int32_t, std::unique_ptr<frmTraceInstance>> instances_;
};

}  // namespace corvex
