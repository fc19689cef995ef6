#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "platform/Transports.h"

namespace corvex {

/// Everything that the program needs from the system it runs on. Created once and passed down by reference.
struct Platform {
  EventLoop& loop;
  WindowSystem& windows;
  SerialControl& comPort;
  SerialPorts& serialPorts;
  SocketControl& sock;
  Dialogs& dialogs;
  Printers& printers;
  Sound& sound;
  Shell& shell;
  /// Formats a date in the system's long form. Returns an empty text for an invalid date.
  std::function<std::string(int year, int month, int day)> longDate;
  /// Passes a DSP record to the closed-source DSP library. numbers[0] is a count n that includes itself, and
  /// `numbers` must have n + 1 elements. If the library is not installed, the function is empty or does
  /// nothing.
  std::function<void(const std::int16_t* numbers)> dspMsg = {};
};

}  // namespace corvex
