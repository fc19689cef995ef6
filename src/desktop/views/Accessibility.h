#pragma once

namespace corvex {

/// Describes the program's own widgets to screen readers: windows and dialogs by their role, panels by their
/// title, clickable pictures as buttons, and the modem's screen and popups as texts that change by
/// themselves. Pictures without a name are left out.
void InstallAccessibility();

}  // namespace corvex
