#pragma once

#include <vector>

#include "platform/EventLoop.h"
#include "platform/Services.h"

class QDialog;
class QString;
class QWidget;

namespace corvex {

class QtWindowSystem;

/// Questions in windows of their own that do not block: the call pumps the program's events until the answer
/// is there, so that the end of the program gets through to it. Prompts that begin "Enter password" hide what
/// is typed.
class QtDialogs : public Dialogs {
 public:
  QtDialogs(EventLoop& loop, const QtWindowSystem& windows) : loop_(loop), windows_(windows) {}

  void MessageBox(std::string_view text) override;
  Answer Ask(const Question& question) override;
  std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) override;
  std::optional<std::string> OpenFile(const FileQuestion& question) override;
  std::optional<std::string> SaveFile(const FileQuestion& question) override;
  std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form* owner) override;

  /// The system ends the program, and nobody may be there to answer: the boxes that are open are given up,
  /// and so is each one that would be opened. Only to the question whether to save the answer is yes, under a
  /// new name in the first of the folders, and in the next one if it is asked again.
  void StopAsking(std::vector<std::string> folders);

  /// Shows a dialog and pumps events until it is answered. Returns its result.
  int Run(QDialog& dialog);
  /// The window of a form, or else the one in front.
  QWidget* OwnerOf(const Form* form) const;

 private:
  Answer Ask(const Question& question, const QString& text, QWidget* owner);
  std::optional<std::string> AskFile(const FileQuestion& question, bool saves);

  std::optional<std::string> NameUnasked();

  EventLoop& loop_;
  const QtWindowSystem& windows_;
  bool asks_ = true;
  std::vector<std::string> folders_;  ///< To save in unasked, the next one last.
};

}  // namespace corvex
