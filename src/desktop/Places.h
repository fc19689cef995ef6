#pragma once

#include <string>

// System-dependent folders and formats.

namespace corvex {

/// Returns the folder for the settings file and all other files that the program writes. This is the
/// program's own folder if it is writable. Otherwise it is a folder named "corvex" in the user's
/// configuration folder, created if necessary.
std::string FindAppFolder();

/// Formats a date in the system's long form. Returns an empty string for an invalid date.
std::string LongDate(int year, int month, int day);

}  // namespace corvex
