#include "panels/modRawCmds.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "base/ScopedFlag.h"
#include "base/Text.h"

namespace corvex {

namespace {

constexpr int kEnter = 13;
constexpr int kEscape = 27;
constexpr int kUp = 38;
constexpr int kDown = 40;

/// Seconds before each character of a script.
constexpr double kPlayPause = 0.05;
/// The longest line of a script, in characters. The rest of a longer line is dropped.
constexpr std::size_t kLongestLine = 32'767;

/// Returns the low 32 bits of the hexadecimal number at the start of a text; 0 if there is none.
std::uint32_t HexPrefix(std::string_view text) {
  std::uint32_t value = 0;
  for (const char c : text) {
    const char upper = UpperCase(c);
    const bool letter = upper >= 'A' && upper <= 'F';
    if (!letter && !IsDigit(c)) break;
    value = value * 16 + static_cast<std::uint32_t>(letter ? upper - 'A' + 10 : c - '0');
  }
  return value;
}

/// Opens a script for reading. Only regular files are opened: opening a pipe would wait forever. If the file
/// cannot be opened, the stream is closed.
std::ifstream OpenScript(const std::string& path) noexcept {
  try {
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return std::ifstream(path, std::ios::binary);
  } catch (const std::exception&) {  // the system cannot represent the path
  }
  return {};
}

void ShowAtEnd(TextBox& box, const std::string& text) {
  box.SetText(text);
  box.selection = TextBox::Selection{text.size(), 0};
}

}  // namespace

std::string BytesFromNumbers(std::string_view line, bool hex) {
  std::string bytes;
  if (line.empty()) return bytes;
  for (Fields tokens(line, ' '); tokens.More();) {
    const std::string_view token = tokens.Next();
    const auto code = hex ? HexPrefix(token) : static_cast<std::uint32_t>(WholePrefix(token));
    bytes += static_cast<char>(code & 0xFF);
  }
  return bytes;
}

void FocusAtPanel(TermControls& window) {
  if (!window.Active()) return;
  if (window.atPanel.optAutoSend.value) {
    window.CorvexFocus1.SetFocus();
  } else {
    window.atPanel.txtRawBytes.SetFocus();
  }
}

void RawCommands::Connect() {
  at_.OptBase[2].value = true;
  for (OptionButton& option : at_.OptBase) option.click = [this] { FocusAtPanel(window_); };
  at_.cmdRawBytes.click = [this] {
    Send();
    if (main_.mode == ModemMode::AtMode) FocusAtPanel(window_);
  };
  at_.chkRepeat.click = [this] {
    if (!at_.chkRepeat.value) window_.tmrRepeater.enabled = false;
  };
  window_.tmrRepeater.tick = [this] { Send(); };
  at_.txtRawBytes.gotFocus = [this] { EnterBox(); };
  at_.txtRawBytes.change = [this] { TakeTyped(); };
  at_.optAutoSend.click = [this] { SetAutoSend(); };
  txtRaw_.gotFocus = [this] { txtRaw_.SelectAll(); };
  txtRaw_.drop = [this](const Drop& drop) { TakeDrop(drop); };
}

void RawCommands::Send() {
  if (!link_.Ready(ModemMode::AtMode)) return;
  const std::string text = at_.txtRawBytes.Text();
  history_.RecordLine(text);
  WriteLine(text);
  EnterBox();
}

void RawCommands::WriteLine(const std::string& text) {
  const bool hex = at_.OptBase[0].value;
  if (!hex && !at_.OptBase[1].value) {
    link_.WriteText(text + '\r');
    window_.tmrRepeater.enabled = at_.chkRepeat.value.Get();
    return;
  }
  std::string numbers = text;
  std::replace(numbers.begin(), numbers.end(), ',', ' ');
  if (numbers != text) at_.txtRawBytes.SetText(numbers);
  for (const char byte : BytesFromNumbers(numbers, hex)) link_.WriteText({&byte, 1});
}

/// Selects the line, so that typing replaces it. Called when the box gets the focus and after the line was
/// sent.
void RawCommands::EnterBox() {
  at_.txtRawBytes.SelectAll();
  at_.lblRec.caption = history_.LastLine();
  if (main_.mode == ModemMode::AtMode && !at_.optAutoSend.value) window_.defaultButton = &at_.cmdRawBytes;
}

bool RawCommands::TakeKey(const KeyEvent& key) {
  TextBox& box = at_.txtRawBytes;
  if (main_.mode != ModemMode::AtMode) {
    // The mode has been left. Enter no longer presses the panel's button.
    if (window_.defaultButton.Get() == &at_.cmdRawBytes) window_.defaultButton = nullptr;
    return false;
  }
  if (!box.HasFocus() || at_.optAutoSend.value || key.shift || key.ctrl || key.alt) return false;
  switch (key.keyCode) {
    case kEnter:
      if (!key.repeated) window_.loop().Post([this] { Send(); });
      return true;
    case kEscape:
      ShowAtEnd(box, history_.scratch());
      return true;
    case kUp:
      history_.NoteScratch(box.Text());
      Recall(history_.RecallOlder());
      return true;
    case kDown:
      history_.NoteScratch(box.Text());
      Recall(history_.RecallNewer());
      return true;
    default:
      return false;
  }
}

void RawCommands::Recall(const std::string& text) {
  at_.lblRec.caption = text;
  ShowAtEnd(at_.txtRawBytes, text);
}

void RawCommands::SetAutoSend() {
  const bool on = at_.optAutoSend.value;
  at_.OptBase[0].visible = !on;
  at_.OptBase[1].visible = !on;
  at_.txtRawBytes.visible = !on;
  at_.lblRawBytes.caption = on ? "auto sending typed characters..." : "Send";
  if (on) {
    at_.txtRawBytes.SetText({});
    window_.defaultButton = nullptr;  // Enter is a character to send
  }
  FocusAtPanel(window_);
}

/// Sends text that still reaches the box while it is hidden.
void RawCommands::TakeTyped() {
  if (!at_.optAutoSend.value || main_.mode != ModemMode::AtMode) return;
  link_.WriteText(at_.txtRawBytes.Text());
  at_.txtRawBytes.SetText({});
}

void RawCommands::TakeDrop(const Drop& drop) {
  constexpr int kAnything = 7;
  if (drop.effect != kAnything || main_.mode != ModemMode::TestInterface) return;
  if (drop.files.size() != 1) {
    platform_.dialogs.MessageBox("Select exactly one file");
  } else if (playing_) {
    platform_.sound.Bell();  // the lines of two scripts would mix
  } else {
    Play(drop.files[0]);
  }
}

/// Sends a script to the test shell. The characters appear one at a time in the line, so that the user can
/// follow them. Playing stops when the mode changes, because no line of the script may be sent in another
/// mode.
void RawCommands::Play(const std::string& path) {
  std::ifstream script = OpenScript(path);
  if (!script.is_open()) return;
  const ScopedFlag playing(playing_);
  std::string line;
  for (char c = 0; script.get(c);) {
    Pause(window_.loop(), kPlayPause);
    if (main_.mode != ModemMode::TestInterface) return;
    if (c == '\r') {
      link_.WriteText("command " + line + std::string(kCrLf));
      line.clear();
    } else if (c != '\n' && line.size() < kLongestLine) {
      line += c;
      txtRaw_.SetText(line);
    }
  }
}

}  // namespace corvex
