#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/EventLoop.h"
#include "platform/Services.h"
#include "platform/Transports.h"

namespace corvex {

/// What the program needs of the system it runs on, handed down by reference from where it is made.
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
  /// A date in the system's long form; empty if there is no such date.
  std::function<std::string(int year, int month, int day)> longDate;
  /// The closed library that takes the records of the modem's DSP: numbers, the first of which says how many
  /// of them it may read, itself included, and one more. Empty, or without effect, where it is not installed.
  std::function<void(const std::int16_t* numbers)> dspMsg = {};
};

}  // namespace corvex
