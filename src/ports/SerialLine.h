#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "ports/LineSettings.h"

// System calls on serial ports other than reading and writing. One source file implements them for POSIX
// systems, one for Windows.

namespace corvex {

#ifdef _WIN32
using LineHandle = void*;
#else
using LineHandle = int;
#endif

/// Opens a device for exclusive, asynchronous reading and writing, applies the settings, and discards bytes
/// received earlier. Returns none if the device is not available or rejects the settings.
std::optional<LineHandle> OpenLine(const std::string& device, const LineSettings& settings);

/// Applies the settings to an open line immediately. Returns false if they are rejected.
bool SetUpLine(LineHandle line, const LineSettings& settings);

void DiscardReceived(LineHandle line);
/// Discards bytes that the system has not sent yet.
void DiscardUnsent(LineHandle line);

/// Returns the number of bytes, up to `most`, that a read may request without waiting for more than the first
/// one.
std::size_t ReadSize(LineHandle line, std::size_t most);

/// Returns the number of bytes that were written but not sent yet. `pending` of them belong to a write that
/// has not completed.
std::size_t UnsentBytes(LineHandle line, std::size_t pending);

/// Returns whether the device still exists, as far as the system can tell.
bool LineAlive(LineHandle line);

}  // namespace corvex
