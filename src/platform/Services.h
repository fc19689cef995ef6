#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Geometry.h"

namespace corvex {

class Form;

/// Parameters of a file dialog.
struct FileQuestion {
  std::string title;
  /// Pairs of a label and its pattern, all separated by "|": "Text files|*.txt|All files|*.*". A label can
  /// have several patterns, separated by ";". Leading and trailing blanks are ignored. A last label without a
  /// pattern is used as a pattern itself.
  std::string filter;
  /// The initial folder, or the path of the suggested file. Ignored if the folder does not exist.
  std::string start;
  const Form* owner = nullptr;
  bool asksBeforeNew = false;  ///< SaveFile only: asks for confirmation if the file does not exist yet.
};

enum class Buttons { YesNo, OkCancel, YesNoCancel, Ok };
enum class Answer { Yes, No, Ok, Cancel };

/// A question that the user answers with a button. Closing the box counts as Cancel, or as No if the box has
/// no Cancel button.
struct Question {
  std::string text = {};
  std::string title = {};  ///< Empty: the program's title.
  Buttons buttons = Buttons::YesNo;
  bool warns = false;  ///< Shows the question as a warning.
  const Form* owner = nullptr;
};

/// Message boxes and dialogs. Each call pumps events until the user has answered, and then returns.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// Shows a text with one button.
  virtual void MessageBox(std::string_view text) = 0;
  /// Asks a question and returns the user's answer.
  virtual Answer Ask(const Question& question) = 0;
  /// Shows a text with one button and a title of its own.
  void Notify(const Question& question) {
    Question notice = question;
    notice.buttons = Buttons::Ok;
    Ask(notice);
  }
  bool AskYesNo(std::string_view text) { return Ask({.text = std::string(text)}) == Answer::Yes; }
  /// Asks for a line of text. Returns nullopt if the user cancels.
  virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) = 0;
  // Both file dialogs return the chosen path in the system's narrow file name encoding, or nullopt if the
  // user cancels.

  /// Lets the user choose an existing file.
  virtual std::optional<std::string> OpenFile(const FileQuestion& question) = 0;
  /// Lets the user choose a file to write to. If the file exists, the user has confirmed that it may be
  /// replaced.
  virtual std::optional<std::string> SaveFile(const FileQuestion& question) = 0;
  /// Lets the user choose a font; `font` is preselected. With `forPrinter`, offers printer fonts only.
  /// Returns nullopt if the user cancels.
  virtual std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form* owner) = 0;
};

/// The window system, which shows forms.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;
  /// Called by a form when it becomes visible for the first time. The window system sets the form's observer,
  /// which is then notified of every change.
  virtual void Attach(Form& form) = 0;
  /// Called by a form before it is destroyed.
  virtual void Detach(Form& form) = 0;
  /// The width of the screen in twips.
  virtual std::int32_t ScreenWidth() const = 0;
  /// The part of the screen that is available to windows, in twips.
  virtual Rect WorkArea() const = 0;
  /// Sets the program's title, which the system shows in its lists of running programs.
  virtual void SetApplicationTitle(const std::string& title) = 0;
};

/// A print job with the options that the user chose: printer, number of copies, paper.
class PrintJob {
 public:
  virtual ~PrintJob() = default;
  /// Prints a text as one document. Returns false on failure.
  virtual bool Print(const std::string& text, const Font& font) = 0;
};

/// The system's printers.
class Printers {
 public:
  virtual ~Printers() = default;
  /// The number of printers.
  virtual int Count() const = 0;
  /// The name of the default printer; empty if there is none.
  virtual std::string DefaultName() const = 0;
  // Both print functions require a printer. They return false on failure.

  /// Prints one copy of a text on the default printer, as one document.
  virtual bool PrintText(const std::string& text, const Font& font) = 0;
  /// Prints an image of a window in its current state on the default printer.
  virtual bool PrintWindow(const Form& form) = 0;
  // Both dialogs pump events until the user has answered, and then return.

  /// Lets the user choose a printer for one document. Returns null if the user cancels.
  virtual std::unique_ptr<PrintJob> Choose(const Form* owner) = 0;
  /// Lets the user choose the system's default printer.
  virtual void ChooseDefault(const Form* owner) = 0;
};

/// Messages for the user: the system has no printer; printing has failed.
inline constexpr std::string_view kNoPrinter = "No printer configured";
inline constexpr std::string_view kPrintFailed = "Error printing";

/// Sound output.
class Sound {
 public:
  virtual ~Sound() = default;
  /// Starts a tone, which may continue after the call returns. Does nothing if the system has no sound.
  virtual void Beep(double hertz, int milliseconds) = 0;
  /// Plays the system's sound for a rejected action.
  virtual void Bell() = 0;
};

/// Other services of the desktop.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Opens a text file in the system's text viewer and does not wait for the viewer to close. Returns false
  /// if the file cannot be opened.
  virtual bool ShowText(const std::string& path) = 0;
  // The text of the clipboard in Latin-1. Lines end in CR LF.
  virtual std::string ClipboardText() const = 0;
  virtual void SetClipboardText(const std::string& text) = 0;
};

}  // namespace corvex
