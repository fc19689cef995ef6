#pragma once

#include <functional>

#include "common/INIFuncs.h"
#include "platform/EventLoop.h"
#include "platform/Services.h"

namespace corvex {

/// Tells the user of the first failure of the settings file, once in a run of the program.
///
/// A setting is read and written in the middle of everything, dialogues with the modem included, and a box
/// that opens in a wait holds up whatever waits. So the box waits until nothing else does.
class SettingsAlarm {
 public:
  /// `closing`: the program is saying goodbye and has nothing to tell any more. All of these live until the
  /// event loop has ended.
  SettingsAlarm(SettingsStore& settings, EventLoop& loop, Dialogs& dialogs, std::function<bool()> closing);
  SettingsAlarm(const SettingsAlarm&) = delete;
  SettingsAlarm& operator=(const SettingsAlarm&) = delete;
  ~SettingsAlarm() { settings_.failed = nullptr; }

 private:
  void Tell(SettingsStore::Failure failure);

  SettingsStore& settings_;
  EventLoop& loop_;
  Dialogs& dialogs_;
  const std::function<bool()> closing_;
  bool raised_ = false;
};

}  // namespace corvex
