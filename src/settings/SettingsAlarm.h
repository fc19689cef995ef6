#pragma once

#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// Shows a message box for the first failure of the settings file. Later failures in the same run of the
/// program are not reported.
///
/// Settings are read and written at any time, even while the program waits for the modem. A message box that
/// opens during a wait would block the waiting code. The box therefore opens only when no code is waiting.
/// While the program closes, one wait follows another without a break, so the box does not open then.
class SettingsAlarm {
 public:
  /// The object must exist until the event loop has ended.
  SettingsAlarm(SettingsStore& settings, EventLoop& loop, Dialogs& dialogs);
  SettingsAlarm(const SettingsAlarm&) = delete;
  SettingsAlarm& operator=(const SettingsAlarm&) = delete;
  ~SettingsAlarm() { settings_.failed = nullptr; }

 private:
  void Tell(SettingsStore::Failure failure);

  SettingsStore& settings_;
  EventLoop& loop_;
  Dialogs& dialogs_;
  bool raised_ = false;
};

}  // namespace corvex
