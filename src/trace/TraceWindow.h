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

/// What the windows of the modem's trace have in common: the end of the text, a file that gets all of it, and
/// buttons below. They stand beside the main window and leave it the keyboard when they open.
class TraceWindow : public Form {
 public:
  ~TraceWindow() override { Withdraw(); }

  /// A text that has grown beyond the bound is cut to its last part, all at once; that is meant.
  static constexpr std::size_t kBound = 1000;
  static constexpr std::size_t kKept = 200;

  TextBox lblText{*this,
                  {.name = "lblText",
                   .rect = {250, 350, 6450, 3600},
                   .font = {.name = "Courier", .size = 10},
                   .accessible = "Trace of the unit"}};
  std::deque<Button> cmdTrace;  ///< 0 switches the log, 1 quits, 2 shows the log.

 protected:
  static constexpr Twips kWidth = 7040;
  static constexpr Twips kHeight = 5175;

  TraceWindow(const Platform& platform, SettingsStore& settings, std::string_view name,
              std::initializer_list<std::string_view> buttons);

  /// The text goes to the caret, which is at the end unless the user has put it elsewhere.
  void Append(std::string_view text);
  void LogLine(std::string_view text);
  void SetLogging(bool on);
  void CaretToEnd() { lblText.selection = TextBox::Selection{lblText.Text().size(), 0}; }
  /// Closes the file, and hides and empties the window.
  void Clear();

  SettingsStore& settings_;
  std::string path_;  ///< Of the log.

 private:
  /// Logging is being switched; before anything is done to the file.
  virtual void ShowLogging(bool on) = 0;
  void ShowLog();
  void LayOut();

  Dialogs& dialogs_;
  Shell& shell_;
  TraceLog log_;
  bool logging_ = false;
};

}  // namespace corvex
