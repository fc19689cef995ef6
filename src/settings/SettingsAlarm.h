#pragma once

#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "settings/INIFuncs.h"

namespace corvex {

/// Tells the user of the first failure of the settings file, once in a run of the program.
///
/// A setting is read and written in the middle of everything, dialogues with the modem included, and a box
/// that opens in a wait holds up whatever waits. So the box waits until nothing else does. That keeps it out
/// of the end of the program too, which is one wait after another.
class SettingsAlarm {
 public:
  /// Lives until the event loop has ended.
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
