#pragma once

#include <cstddef>
#include <optional>

#include "forms/clsRez.h"
#include "window/TermControls.h"

namespace corvex {

/// Controls which parts of the main window are visible and how large the window is. The compact window has
/// the terminal area; the full window is larger and has the service panels below it.
///
/// The controls scale with the window, whether the user or the program resizes it. Scaling is suspended when
/// the program switches between compact and full, because that change of size must not stretch any control.
/// It resumes when tmrResize ticks. By then the window system has applied the new size or refused it: a
/// maximized window does not grow, and the panels take a share of the existing height. Each layout is
/// computed only from the current size and the registered proportions, so intermediate sizes have no effect
/// on the result.
class WindowLayout {
 public:
  explicit WindowLayout(TermControls& window) : window_(window) {}

  /// The first call sets the window's size. Later calls undo ShowFullWindow.
  void ShowCompactWindow();
  /// Grows the window by the height of the service panels. No effect if the window is already full.
  void ShowFullWindow();

  /// To be called on each tick of tmrResize, when the size is stable. Starts or resumes scaling.
  void Settle();
  /// To be called when the window's size or state has changed, except when it has been minimized.
  void FollowSize();
  void ZoomIn() { Zoom(&clsRez::Magnify); }
  void ZoomOut() { Zoom(&clsRez::ReduceSize); }
  void EndScaling() { scaler_.reset(); }
  Event<> adjusted;  ///< The controls have new positions.

  void SetFramePositions();
  /// Shows the full window with this service panel and hides all other panels.
  void ShowPanel(std::size_t panel);
  void HideConnectPanels();
  void HideTextView();
  void HideLists();

  /// If the window is active, focuses the control of the terminal area that takes keys: the choice list if it
  /// is visible, otherwise CorvexFocus1.
  void FocusScreen();

 private:
  struct Size {
    Twips width = 0;
    Twips height = 0;
    friend bool operator==(const Size&, const Size&) = default;
  };
  using ZoomStep = void (clsRez::*)(Form& form, Twips width, Twips height);

  void ChangeLayout(bool expanded);
  void FitHeight();
  void Adjust();
  void Zoom(ZoomStep step);
  void OfferZoom();
  void SettleSoon();
  Size InnerSize() const { return {window_.InnerWidth(), window_.InnerHeight()}; }
  Size WantedSize() const;

  TermControls& window_;
  bool firstSizeDone_ = false;
  bool expanded_ = false;  ///< The full window is wanted.
  bool grown_ = false;     ///< The normal (not maximized) window includes the height of the panels.
  Twips savedHeight_ = 0;  ///< Height of the window without the panels.

  Rect base_;              ///< The window's rectangle when first shown, at zoom 1.0.
  Size baseInner_;         ///< The inner size at that time.
  Twips panelHeight_ = 0;  ///< The height of the service panels at that time.
  std::optional<clsRez> scaler_;
  Size registered_;  ///< The window's inner size when its controls were registered.
  Size laidOut_;     ///< The size for which the controls were last placed.
};

}  // namespace corvex
