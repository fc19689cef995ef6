#include "window/PopUp.h"

#include "base/Text.h"

namespace corvex {

void ShowPopUp(TermControls& window, std::string_view text) {
  window.tmrMsg.enabled = false;
  const auto lines = Split(text, '|');
  window.LblMsg[1].caption = lines.size() > 1 ? lines[1] : std::string_view{};
  window.frmMsg.visible = true;
  window.frmMsg.BringToFront();
  window.LblMsg[0].caption = lines[0];
  window.tmrMsg.enabled = true;
}

void ClearPopUp(TermControls& window) {
  window.frmMsg.visible = false;
  window.LblMsg[0].caption = "";
  window.LblMsg[1].caption = "";
}

}  // namespace corvex
