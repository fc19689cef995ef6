#pragma once

#include <vector>

#include "platform/EventLoop.h"
#include "platform/Services.h"

class QDialog;
class QString;
class QWidget;

namespace corvex {

class QtWindowSystem;

/// Dialogs on Qt. Each call pumps the program's events until the user has answered, so the program can end
/// while a dialog is open. An input box hides the typed text if its prompt starts with "Enter password".
class QtDialogs : public Dialogs {
 public:
  QtDialogs(EventLoop& loop, const QtWindowSystem& windows) : loop_(loop), windows_(windows) {}

  void MessageBox(std::string_view text) override;
  Answer Ask(const Question& question) override;
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) override;
  std::optional<std::string> OpenFile(const FileQuestion& question) override;
  std::optional<std::string> SaveFile(const FileQuestion& question) override;
  std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form* owner) override;

  /// Called when the system ends the program and the user may not be there to answer. Cancels all open
  /// dialogs and every dialog that would open later.
  ///
  /// Exception: the question whether to save is answered with Yes, and SaveFile returns a new file name in
  /// the first of `folders`. Each further call of SaveFile uses the next folder. When no folder is left, the
  /// answer is No.
  void StopAsking(std::vector<std::string> folders);

  /// Shows a dialog, pumps events until the user has answered, and returns its result.
  int Run(QDialog& dialog);
  /// Returns the window of a form. Without a form or a window, returns the front window.
  QWidget* OwnerOf(const Form* form) const;

 private:
  Answer Ask(const Question& question, const QString& text, QWidget* owner);
  std::optional<std::string> AskFile(const FileQuestion& question, bool saves);

  std::optional<std::string> NameUnasked();

  EventLoop& loop_;
  const QtWindowSystem& windows_;
  bool asks_ = true;
  std::vector<std::string> folders_;  ///< For saving without a dialog; the next folder to use is the last.
};

}  // namespace corvex
