#include "session/WindowKeys.h"

#include "platform/Services.h"

namespace corvex {

namespace {

constexpr int kF1 = 112;
constexpr std::string_view kHints =
    "Ensure the modem is connected\r\nConfigure the serial port if required (ctrl-p)";

}  // namespace

bool TakeWindowKey(const KeyEvent& key, const MainState& main, TermControls& window, Dialogs& dialogs) {
  if (main.mode == ModemMode::Terminal || main.mode == ModemMode::Closing) return false;
  if (main.mode == ModemMode::AtMode && window.atPanel.optAutoSend.value) return false;  // bytes to send
  const bool help = key.keyCode == kF1 && !key.ctrl && !key.alt && !key.shift;
  const bool port = key.keyCode == 'P' && key.ctrl && !key.alt && !key.shift;
  if (!help && !port) return false;
  if (key.repeated) return true;  // a key that is held down must not open and close the panel again and again
  window.loop().Post([help, &window, &dialogs] {
    if (help) {
      dialogs.MessageBox(kHints);
    } else if (window.mnuPort.visible && window.mnuPort.enabled) {
      window.mnuPort.click();
    }
  });
  return true;
}

}  // namespace corvex
