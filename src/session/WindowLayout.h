#pragma once

#include <cstddef>

#include "session/TermControls.h"

namespace corvex {

/// What of the main window is shown, and how large the window is: compact around the terminal area, or grown
/// by the service panels below it.
class WindowLayout {
 public:
  explicit WindowLayout(TermControls& window) : window_(window) {}

  /// The first call gives the window its size, later ones take back what ShowFullWindow has added.
  void ShowCompactWindow();
  /// Grows the window by the height of the service panels, once.
  void ShowFullWindow();

  void SetFramePositions();
  /// Shows one service panel in the place of all others, in the full window.
  void ShowPanel(std::size_t panel);
  void HideConnectPanels();
  void HideTextView();
  void HideLists();

  /// Gives the focus to what takes keys in the terminal area, if the window is the active one.
  void FocusScreen();

 private:
  TermControls& window_;
  bool firstSizeDone_ = false;
  bool expanded_ = false;
  Twips savedHeight_ = 0;  ///< Of the window before it was grown.
};

}  // namespace corvex
