#pragma once

#include <cstddef>
#include <optional>

#include "forms/clsRez.h"
#include "window/TermControls.h"

namespace corvex {

/// What of the main window is shown, and how large the window is: compact around the terminal area, or grown
/// by the service panels below it.
///
/// The controls follow the size of the window, whoever has changed it. Scaling rests from a change between
/// the two layouts until tmrResize ticks, as the growth itself must not stretch anything; by then the window
/// system has done what it was asked, or not: a maximised window does not grow, and the panels then take
/// their share of the height there is. Whatever comes in between, the next layout is right, as it follows
/// from the present size and the registered proportions alone.
class WindowLayout {
 public:
  explicit WindowLayout(TermControls& window) : window_(window) {}

  /// The first call gives the window its size, later ones take back what ShowFullWindow has added.
  void ShowCompactWindow();
  /// Grows the window by the height of the service panels, once.
  void ShowFullWindow();

  /// The tick of tmrResize: the window has settled. Scaling begins, or goes on.
  void Settle();
  /// The window's size or state is another; not for a minimised one.
  void FollowSize();
  void ZoomIn() { Zoom(&clsRez::Magnify); }
  void ZoomOut() { Zoom(&clsRez::ReduceSize); }
  void EndScaling() { scaler_.reset(); }
  Event<> adjusted;  ///< The controls have been placed anew.

  void SetFramePositions();
  /// Shows one service panel in the place of all others, in the full window.
  void ShowPanel(std::size_t panel);
  void HideConnectPanels();
  void HideTextView();
  void HideLists();

  /// Gives the focus to what takes keys in the terminal area, if the window is the active one.
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
  bool expanded_ = false;  ///< The service panels are to be seen.
  bool grown_ = false;     ///< The window, while it is a normal one, has been given their height.
  Twips savedHeight_ = 0;  ///< Of the window before it was grown.

  Rect base_;              ///< The window as it was first shown: zoom 1.0.
  Size baseInner_;         ///< Its inner size,
  Twips panelHeight_ = 0;  ///< and the height of the service panels then.
  std::optional<clsRez> scaler_;
  Size registered_;  ///< The inner size of the window when its controls were registered.
  Size laidOut_;     ///< The size that they were last placed for.
};

}  // namespace corvex
