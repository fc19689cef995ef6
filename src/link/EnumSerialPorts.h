#pragma once

#include <cstdint>
#include <string>

#include "platform/Transports.h"
#include "settings/INIFuncs.h"

// What stands behind the numbers of the serial ports on this system. The state of a port is that of the
// moment: adapters come and go.

namespace corvex {

/// The numbers that can be chosen.
inline constexpr int kFirstComPort = 1;
inline constexpr int kLastComPort = 16;

/// Not 0 if the system has a device behind the number, whether the user may use it or not.
std::int32_t PortExists(const SerialPorts& ports, const SettingsStore& settings, int number);

/// The device behind the number in words, and what to do where it cannot be used.
std::string DescribePort(const SerialPorts& ports, const SettingsStore& settings, int number);

}  // namespace corvex
