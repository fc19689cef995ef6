#pragma once

namespace corvex {

/// Lets screen readers know our own widgets for what they are: windows and dialogs, the modem's screen and a
/// popup as texts that change by themselves, panels by their titles, and pictures that are clicked as
/// buttons. A picture without a name is left out.
void InstallAccessibility();

}  // namespace corvex
