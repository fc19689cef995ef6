#pragma once

#include "trace/TraceWindow.h"

namespace corvex {

/// The master trace window. Its closing, by whomever, tells the modem to stop. Some of what it sends is sent
/// twice; that is meant.
class frmTracer : public TraceWindow {
 public:
  frmTracer(const Platform& platform, SettingsStore& settings);
  ~frmTracer() override { loop().Cancel(quitting_); }

  void Open();
  void Unload();
  void TraceText(std::string_view text);

  Event<char> send;  ///< A character to the modem.
  Event<> ends;      ///< The window is being closed; before any wait.

 private:
  void ShowLogging(bool on) override;
  void Quit();
  void SavePosition();

  bool loaded_ = false;
  unsigned turns_ = 0;     ///< How often it has been opened or closed.
  unsigned quitTurn_ = 0;  ///< The one in which Quit was clicked.
  EventLoop::TimerId quitting_ = 0;
};

}  // namespace corvex
