#include "common/SettingsAlarm.h"

#include <chrono>
#include <string>
#include <utility>

namespace corvex {

SettingsAlarm::SettingsAlarm(SettingsStore& settings, EventLoop& loop, Dialogs& dialogs)
    : settings_(settings), loop_(loop), dialogs_(dialogs) {
  settings_.failed = [this](SettingsStore::Failure failure) {
    if (std::exchange(raised_, true)) return;
    loop_.Post([this, failure] { Tell(failure); });
  };
}

void SettingsAlarm::Tell(SettingsStore::Failure failure) {
  if (loop_.Waits() > 0 || loop_.ModalsOpen() > 0) {
    constexpr auto kAgain = std::chrono::milliseconds(500);
    loop_.After(kAgain, [this, failure] { Tell(failure); });
    return;
  }
  const bool reading = failure == SettingsStore::Failure::Reading;
  dialogs_.MessageBox(
      (reading ? "Cannot read the settings file\n" : "Cannot write the settings file\n") + settings_.File() +
      (reading ? "\nCorvex works with default settings." : "\nChanged settings are not kept."));
}

}  // namespace corvex
