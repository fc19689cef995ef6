#include "settings/SettingsAlarm.h"

#include <chrono>
#include <string>
#include <utility>

namespace corvex {

SettingsAlarm::SettingsAlarm(SettingsStore& settings, EventLoop& loop, Dialogs& dialogs)
    : settings_(settings), loop_(loop), dialogs_(dialogs) {
  settings_.failed = [this](SettingsStore::Failure failure) {
    if (std::exchange(raised_, true)) return;
    // At program start, wait until the first connect has begun: it requires the main window to be active.
    constexpr auto kAtStart = std::chrono::seconds(1);
    loop_.After(kAtStart, [this, failure] { loop_.PostForQuiet([this, failure] { Tell(failure); }); });
  };
}

void SettingsAlarm::Tell(SettingsStore::Failure failure) {
  const bool reading = failure == SettingsStore::Failure::Reading;
  dialogs_.MessageBox(
      (reading ? "Cannot read the settings file\n" : "Cannot write the settings file\n") + settings_.File() +
      (reading ? "\nCorvex works with default settings." : "\nChanged settings are not kept."));
}

}  // namespace corvex
