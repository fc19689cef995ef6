#pragma once

#include <string>

#include "platform/EventLoop.h"
#include "settings/INIFuncs.h"

// When a periodic log is due, and what its file is called.

namespace corvex {

/// Whether the interval has gone by since the last log; then the next one begins now. The first call only
/// begins it. Where that cannot be stored, and where what is stored is no time, no log is due and nothing
/// changes: a log at every check would fill the disk.
///
/// Times are stored as "2006-03-31 14:05:09" whatever the system's own form is, so that they can be read back
/// everywhere.
bool LogDue(const EventLoop& loop, SettingsStore& settings);

/// "Blog03311405.txt" on 31 March at 14:05. The number from the status table was once a part of it.
std::string LogFileName(const EventLoop& loop, const std::string& statusNumber);

}  // namespace corvex
