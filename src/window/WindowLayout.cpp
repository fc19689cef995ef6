#include "window/WindowLayout.h"

#include <cstdint>

namespace corvex {

namespace {

constexpr std::size_t kPortPanel = 0;
constexpr std::size_t kUnplacedPanel = 2;  // not moved by SetFramePositions; intentional

}  // namespace

void WindowLayout::ShowCompactWindow() {
  if (!firstSizeDone_) {
    firstSizeDone_ = true;
    Rect rect = window_.rect;
    rect.height = TermControls::kCompactHeight;
    rect.width = TermControls::kWidth;
    window_.rect = rect;
    base_ = rect;
    baseInner_ = InnerSize();
    panelHeight_ = window_.frmAux.rect.Get().height;
    return;
  }
  ChangeLayout(false);
}

void WindowLayout::ShowFullWindow() {
  ChangeLayout(true);
}

void WindowLayout::ChangeLayout(bool expanded) {
  if (expanded_ != expanded) {
    expanded_ = expanded;
    if (scaler_) scaler_->DisableRez();
    FitHeight();
  }
  SettleSoon();  // even if the layout is unchanged: the caller may have stopped the timer
}

/// Grows the window by the height of the panels, or shrinks it again. Does nothing while the window is
/// maximized or minimized, because the system then sets the size. Settle catches up later.
void WindowLayout::FitHeight() {
  if (window_.windowState != WindowState::Normal || grown_ == expanded_) return;
  if (expanded_) Adjust();  // the panels' height must match the window's present size
  grown_ = expanded_;
  Rect rect = window_.rect;
  if (grown_) {
    savedHeight_ = rect.height;
    rect.height += window_.frmAux.rect.Get().height;
  } else {
    rect.height = savedHeight_;
  }
  window_.rect = rect;
}

void WindowLayout::SettleSoon() {
  window_.tmrResize.enabled = false;
  window_.tmrResize.enabled = true;
}

void WindowLayout::Settle() {
  if (window_.windowState == WindowState::Minimized) return;
  if (!scaler_) scaler_.emplace();
  if (!scaler_->HasRegistered()) {
    scaler_->Register(window_);
    if (!scaler_->HasRegistered()) return;
    registered_ = laidOut_ = InnerSize();
  }
  scaler_->EnableRez();
  FitHeight();
  // Skip this if the size is already right: the first adjustment enlarges the fonts by one point.
  if (laidOut_ != WantedSize()) Adjust();
  OfferZoom();
}

void WindowLayout::FollowSize() {
  Adjust();
  OfferZoom();
  const bool scales = scaler_ && scaler_->RezEnabled();
  if (!scales || (window_.windowState == WindowState::Normal && grown_ != expanded_)) SettleSoon();
}

void WindowLayout::Adjust() {
  if (!scaler_ || !scaler_->RezEnabled()) return;
  laidOut_ = WantedSize();
  scaler_->AdjustControls(window_, laidOut_.height, laidOut_.width);
  if (window_.windowState == WindowState::Normal && grown_) {
    savedHeight_ = window_.rect.Get().height - window_.frmAux.rect.Get().height;
  }
  adjusted();
}

/// Returns the inner size for which the controls must be placed: the registered size, multiplied by the
/// current inner size and divided by the original one. The original size does not include the panels, so
/// their height is added to it if they are visible.
WindowLayout::Size WindowLayout::WantedSize() const {
  const bool panels = window_.windowState == WindowState::Normal ? grown_ : expanded_;
  const auto scaled = [](Twips now, Twips registered, Twips base) {
    return static_cast<Twips>((static_cast<std::int64_t>(now) * registered + base / 2) / base);
  };
  const Size inner = InnerSize();
  return {scaled(inner.width, registered_.width, baseInner_.width),
          scaled(inner.height, registered_.height, baseInner_.height + (panels ? panelHeight_ : 0))};
}

void WindowLayout::Zoom(ZoomStep step) {
  if (!scaler_) return;
  scaler_->EnableRez();
  const float before = scaler_->ZoomFactor();
  ((*scaler_).*step)(window_, base_.width, base_.height);
  if (scaler_->ZoomFactor() == before) return;
  grown_ = false;  // a zoom step sets the window's size without the panels
  FitHeight();
}

/// Zoom is disabled in a maximized window, because a zoom step changes the window's size.
void WindowLayout::OfferZoom() {
  const bool offered = scaler_ && scaler_->HasRegistered() && window_.windowState != WindowState::Maximized;
  window_.mnuZoomIn.enabled = offered;
  window_.mnuZoomOut.enabled = offered;
}

void WindowLayout::SetFramePositions() {
  for (std::size_t i = 0; i < window_.fmOnTab.size(); ++i) {
    if (i == kUnplacedPanel) continue;
    Frame& panel = window_.fmOnTab[i];
    Rect rect = panel.rect;
    rect.left = 90;
    rect.top = 30;
    panel.rect = rect;
    panel.visible = false;
  }
}

void WindowLayout::ShowPanel(std::size_t panel) {
  window_.frmAux.visible = true;
  // Hide the others: going offline leaves a panel visible, and all panels have the same position.
  for (Frame& other : window_.fmOnTab) other.visible = other.index() == static_cast<int>(panel);
  window_.cmdCls.visible = panel != kPortPanel;
  ShowFullWindow();
}

void WindowLayout::HideConnectPanels() {
  window_.frmSerial.visible = false;
  window_.frmLan.visible = false;
}

void WindowLayout::HideTextView() {
  window_.txtRx.visible = false;
}

void WindowLayout::HideLists() {
  window_.frmMenu.visible = false;
  window_.ListMenu.visible = false;
  window_.frmChoice.visible = false;
}

void WindowLayout::FocusScreen() {
  if (!window_.Active()) return;
  if (window_.frmChoice.visible) {
    window_.ListChoice.SetFocus();
  } else {
    window_.CorvexFocus1.SetFocus();
  }
}

}  // namespace corvex
