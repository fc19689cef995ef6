#pragma once

#include "settings/INIFuncs.h"
#include "state/ModemMode.h"
#include "window/TermControls.h"

namespace corvex {

/// Checks the menu entry of the current mode.
void MarkMode(TermControls& window, ModemMode mode);

/// Checks the menu entry of the MUB that the settings select. Hides the menu of the MUBs if the connection
/// uses neither the LAN nor an ERB unit; otherwise shows the entry of the port setup.
void MarkRoute(TermControls& window, const SettingsStore& settings);

}  // namespace corvex
