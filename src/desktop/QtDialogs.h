#pragma once

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

  /// Shows a dialog and pumps events until it is answered. Returns its result.
  int Run(QDialog& dialog);
  /// The window of a form, or else the one in front.
  QWidget* OwnerOf(const Form* form) const;

 private:
  Answer Ask(const Question& question, const QString& text, QWidget* owner);
  std::optional<std::string> AskFile(const FileQuestion& question, bool saves);

  EventLoop& loop_;
  const QtWindowSystem& windows_;
};

}  // namespace corvex
