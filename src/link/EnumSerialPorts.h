#pragma once

#include <cstdint>
#include <string>

#include "platform/Transports.h"
#include "settings/INIFuncs.h"

// Maps the numbers of the serial ports to the devices of this system. The state of a port is checked on every
// call, because adapters can be connected and removed at any time.

namespace corvex {

/// The range of valid port numbers.
inline constexpr int kFirstComPort = 1;
inline constexpr int kLastComPort = 16;

/// Returns a value other than 0 if the system has a device for the port number. The user may still lack the
/// permission to use it.
std::int32_t PortExists(const SerialPorts& ports, const SettingsStore& settings, int number);

/// Returns a text for the user that names the device for the port number. If the device cannot be used, the
/// text says what to do.
std::string DescribePort(const SerialPorts& ports, const SettingsStore& settings, int number);

}  // namespace corvex
