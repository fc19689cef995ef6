#pragma once

#include "common/INIFuncs.h"
#include "session/MainState.h"
#include "session/SessionState.h"
#include "session/TermControls.h"

namespace corvex {

/// Shows the soft keys of the session on their buttons and images.
void ShowSoftKeys(TermControls& window, const MainState& main, const SessionState& state,
                  const SettingsStore& settings);

}  // namespace corvex
