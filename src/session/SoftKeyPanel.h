#pragma once

#include "settings/INIFuncs.h"
#include "state/MainState.h"
#include "state/SessionState.h"
#include "window/TermControls.h"

namespace corvex {

/// Shows the soft keys of the session state on their buttons and images.
void ShowSoftKeys(TermControls& window, const MainState& main, const SessionState& state,
                  const SettingsStore& settings);

}  // namespace corvex
