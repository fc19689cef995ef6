#pragma once

#include <string>

#include "platform/EventLoop.h"
#include "settings/INIFuncs.h"

// Decides when a periodic log is due, and names its file.

namespace corvex {

/// Returns whether the interval has passed since the last log. If so, stores the current time as the time of
/// the last log. The first call only stores the time. Returns false if the time cannot be stored or if the
/// stored text is not a time, because a log at every check would fill the disk.
///
/// Times are stored in the form "2006-03-31 14:05:09" on every system.
bool LogDue(const EventLoop& loop, SettingsStore& settings);

/// "Blog03311405.txt" on 31 March at 14:05. The number from the status table is not used (intended).
std::string LogFileName(const EventLoop& loop, const std::string& statusNumber);

}  // namespace corvex
