#pragma once

#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// Shows a message box for the first failure of the settings file. Later failures in the same run of the
/// program are not reported.
///
/// Settings are read and written at any time, even during a dialogue with the modem. A message box that opens
/// during a wait would block the code that is waiting. The box therefore opens only when nothing is waiting.
/// For the same reason it does not appear while the program ends, because waits follow each other without a
/// break there.
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
