#pragma once

namespace corvex {

/// Describes the program's own widgets to screen readers: windows and dialogs by their role, panels by their
/// title, and clickable pictures as buttons. Makes the text of the modem's screen and of popups readable.
/// Pictures without a name are left out.
void InstallAccessibility();

}  // namespace corvex
