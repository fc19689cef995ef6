#pragma once

#include <string>
#include <string_view>

#include "panels/LineHistory.h"
#include "panels/PanelLink.h"
#include "platform/Platform.h"
#include "window/TermControls.h"

namespace corvex {

/// The bytes that a line of numbers between blanks stands for. A number is as long as it is well-formed, 0
/// where there is none, and two blanks have an empty one between them, which is 0. Of a number that is larger
/// than a byte its low byte goes out.
std::string BytesFromNumbers(std::string_view line, bool hex);

/// Gives the focus to what takes lines or keys in the AT panel, if the window is the active one.
void FocusAtPanel(TermControls& window);

/// The free ways of talking to the modem: the byte editor of the AT mode, and the line of the test interface
/// with the scripts that are dropped on it.
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

  /// A key that the window has seen before any control. True if it was one of the byte editor's.
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
  bool playing_ = false;  ///< A script.
};

}  // namespace corvex
