#pragma once

#include <string>

// What of the system's ways the program is told at its start.

namespace corvex {

/// The folder of the settings file and of all that the program writes: the program's own if it may write
/// there; otherwise one of its own in the user's folder for settings, which is made if need be.
std::string FindAppFolder();

/// A date in the system's long form; empty if there is no such date.
std::string LongDate(int year, int month, int day);

}  // namespace corvex
