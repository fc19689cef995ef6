#pragma once

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
  /// A date in the system's long form; empty if there is no such date.
  std::function<std::string(int year, int month, int day)> longDate;
};

}  // namespace corvex
