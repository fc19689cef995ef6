#pragma once

#include <string>
#include <string_view>

#include "panels/LineHistory.h"
#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// Converts numbers separated by single blanks to bytes. Each field is read up to its first invalid
/// character; a field without a number is 0. Two adjacent blanks enclose an empty field, which is also 0. A
/// number larger than a byte is reduced to its low byte.
std::string BytesFromNumbers(std::string_view line, bool hex);

/// Moves the focus to the control of the AT panel that takes input, if the window is active.
void FocusAtPanel(TermControls& window);

/// Free input to the modem: the byte editor of the AT mode, the command line of the test interface, and the
/// scripts that are dropped on that line.
class RawCommands {
 public:
  RawCommands(const Platform& platform, const MainState& main, TermControls& window, PanelLink& link)
      : platform_(platform),
        main_(main),
        window_(window),
        at_(window.atPanel),
        txtRaw_(window.testPanel.txtRaw),
        link_(link) {}
  void Connect();

  /// Handles a key before any control sees it. Returns true if the byte editor has used the key.
  bool TakeKey(const KeyEvent& key);

 private:
  void Send();
  void WriteLine(const std::string& text);
  void EnterBox();
  void Recall(const std::string& text);
  void SetAutoSend();
  void TakeTyped();
  void TakeDrop(const Drop& drop);
  void Play(const std::string& path);

  const Platform& platform_;
  const MainState& main_;
  TermControls& window_;
  AtPanel& at_;
  TextBox& txtRaw_;
  PanelLink& link_;
  LineHistory history_;
  bool playing_ = false;  ///< A script is being played.
};

}  // namespace corvex
