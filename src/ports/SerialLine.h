#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "ports/LineSettings.h"

// What the systems' serial ports need beyond reading and writing; one source file for POSIX systems and one
// for Windows.

namespace corvex {

#ifdef _WIN32
using LineHandle = void*;
#else
using LineHandle = int;
#endif

/// Opens a device for this program alone, ready for asynchronous reading and writing, and sets its line up.
/// What had arrived before is thrown away. None if the device is not available or refuses the settings.
std::optional<LineHandle> OpenLine(const std::string& device, const LineSettings& settings);

/// Changes an open line at once. False if it is refused.
bool SetUpLine(LineHandle line, const LineSettings& settings);

void DiscardReceived(LineHandle line);
/// Takes back what the system has not sent yet.
void DiscardUnsent(LineHandle line);

/// How many bytes a read may ask for without waiting for more than the first, `most` at the most.
std::size_t ReadSize(LineHandle line, std::size_t most);

/// Bytes that were written and have not left yet; `pending` of them are in a write that has not completed.
std::size_t UnsentBytes(LineHandle line, std::size_t pending);

/// Whether the device is still there, as far as the system can tell.
bool LineAlive(LineHandle line);

}  // namespace corvex
