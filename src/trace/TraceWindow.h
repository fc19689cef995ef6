#pragma once

#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>

#include "forms/Controls.h"
#include "platform/Platform.h"
#include "settings/INIFuncs.h"
#include "trace/TraceLog.h"

namespace corvex {

/// The common part of the trace windows: a text box with the latest trace text, a log file with all of it,
/// and a row of buttons. A trace window has no owner and does not take the keyboard focus when it opens.
class TraceWindow : public Form {
 public:
  ~TraceWindow() override { Withdraw(); }

  /// A text longer than kBound characters is cut to its last kKept characters in one step. Intentional: the
  /// text is not trimmed line by line.
  static constexpr std::size_t kBound = 1000;
  static constexpr std::size_t kKept = 200;

  TextBox lblText{*this,
                  {.name = "lblText",
                   .rect = {250, 350, 6450, 3600},
                   .font = {.name = "Courier", .size = 10},
                   .accessible = "Trace of the unit"}};
  std::deque<Button> cmdTrace;  ///< 0 switches logging on or off, 1 quits, 2 shows the log.

 protected:
  static constexpr Twips kWidth = 7040;
  static constexpr Twips kHeight = 5175;

  TraceWindow(const Platform& platform, SettingsStore& settings, std::string_view name,
              std::initializer_list<std::string_view> buttons);

  /// Inserts the text after the selection. The caret is at the end of the text unless the user has moved it.
  void Append(std::string_view text);
  void LogLine(std::string_view text);
  void SetLogging(bool on);
  void CaretToEnd() { lblText.selection = TextBox::Selection{lblText.Text().size(), 0}; }
  /// Stops logging, hides the window and empties its text box.
  void Clear();

  SettingsStore& settings_;
  std::string path_;  ///< Path of the log file.

 private:
  /// Updates the window's caption. Called before the log file is opened or closed.
  virtual void ShowLogging(bool on) = 0;
  void ShowLog();
  void LayOut();

  Dialogs& dialogs_;
  Shell& shell_;
  TraceLog log_;
  bool logging_ = false;
};

}  // namespace corvex
