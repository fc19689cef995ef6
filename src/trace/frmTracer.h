#pragma once

#include "trace/TraceWindow.h"

namespace corvex {

/// The master trace window. However it is closed, the modem is told to stop the trace. Intentional: some
/// control characters are sent twice.
class frmTracer : public TraceWindow {
 public:
  frmTracer(const Platform& platform, SettingsStore& settings);
  ~frmTracer() override { loop().Cancel(quitting_); }

  void Open();
  void Unload();
  void TraceText(std::string_view text);

  Event<char> send;  ///< Asks the owner to send a character to the modem.
  Event<> ends;      ///< The window is being closed. Raised before any wait.

 private:
  void ShowLogging(bool on) override;
  void Quit();
  void SavePosition();

  bool loaded_ = false;
  unsigned turns_ = 0;     ///< Number of times that the window was opened or closed.
  unsigned quitTurn_ = 0;  ///< Value of turns_ when Quit was clicked.
  EventLoop::TimerId quitting_ = 0;
};

}  // namespace corvex
