#include "session/WindowLayout.h"

namespace corvex {

namespace {

constexpr std::size_t kUnplacedPanel = 2;  // keeps its place; that is meant

}  // namespace

void WindowLayout::ShowCompactWindow() {
  Rect rect = window_.rect;
  if (!firstSizeDone_) {
    firstSizeDone_ = true;
    rect.height = TermControls::kCompactHeight;
    rect.width = TermControls::kWidth;
    window_.rect = rect;
    return;
  }
  if (!expanded_) return;
  expanded_ = false;
  rect.height = savedHeight_;
  window_.rect = rect;
}

void WindowLayout::ShowFullWindow() {
  if (expanded_) return;
  expanded_ = true;
  Rect rect = window_.rect;
  savedHeight_ = rect.height;
  rect.height += window_.frmAux.rect.Get().height;
  window_.rect = rect;
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
  // Going offline leaves the panel where it is, and all stand in the same place.
  for (Frame& other : window_.fmOnTab) other.visible = other.index() == static_cast<int>(panel);
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
