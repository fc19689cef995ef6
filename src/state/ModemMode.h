#pragma once

#include <cstdint>

namespace corvex {

/// What the main window is doing. The mode decides how received bytes are handled. 6 and 7 are not used.
enum class ModemMode : std::int32_t {
  AwaitIntro = 1,     ///< Detecting the modem. Received bytes are dropped or read by the probe.
  Offline = 2,        ///< No session.
  PortSetup = 3,      ///< Serial and LAN settings are shown.
  TestInterface = 4,  ///< The test command set. Received text goes to the text view.
  AtMode = 5,         ///< Free commands and bytes. Received text goes to the text view.
  Terminal = 8,       ///< The modem's menus and screens.
  DeviceManager = 9,  ///< The Device Manager reads the link itself.
  Closing = 10,       ///< The program is ending.
  Failed = 11,        ///< Connecting failed. The watchdog may try again.
  Upgrade = 12,       ///< The upgrade window reads the link itself.
};

}  // namespace corvex
