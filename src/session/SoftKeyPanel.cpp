#include "session/SoftKeyPanel.h"

#include <optional>
#include <string>

#include "base/Text.h"

namespace corvex {

void ShowSoftKeys(TermControls& window, const MainState& main, const SessionState& state,
                  const SettingsStore& settings) {
  std::optional<bool> ownImages;  // read from the settings file only if a key has an image
  for (std::size_t key = 0; key < state.softKeyText.size(); ++key) {
    const std::string& text = state.softKeyText[key];
    const bool blank = TrimBlanks(text).empty();
    window.cmdSK[key].enabled = !blank;
    window.cmdSK[key].caption = blank ? std::string() : text;
    window.cmdSK[key].accessible = std::string(blank ? TermControls::kBlankKey[key] : "");
    window.imgKey[key].visible = !blank;
    if (blank) continue;
    const int code = state.softKeyCode[key] == 0 ? 2 : state.softKeyCode[key];
    if (!ownImages) {
      const std::string phone = settings.config.phone.Get();
      ownImages = (phone == "R1" || phone == "R2") && main.mode == ModemMode::Terminal;
    }
    window.imgKey[key].picture = "key " + std::to_string(*ownImages ? code : 0);
  }
}

}  // namespace corvex
