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

/// Controls the modem's trace streams and owns the windows that show them.
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

  /// Installs the click handlers of the trace entries in the main window's menu.
  void Connect();

  /// Shows a trace record in the master window.
  void TraceText(std::string_view text) { tracer_.TraceText(text); }
  /// Shows a record in the window of a trace channel. The first record of a channel opens its window. Channel
  /// 0 has no window; its records are dropped.
  void TraceToInstance(std::int32_t channel, std::string_view text);

  /// Called when a session has opened the modem's menus. Sends the switches that could not be sent before.
  void SessionOpened();

  /// Closes the master window if it is open. Waits for one turn of the event loop.
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
  bool owed_ = false;  ///< Trace was switched on outside a session, and the modem has not been told yet.
  bool secondTold_ = false;  ///< The last state of the second stream that was sent to the modem.
  std::map<std::int32_t, std::unique_ptr<frmTraceInstance>> instances_;
};

}  // namespace corvex
