#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Geometry.h"

namespace corvex {

class Form;

/// A question for a file.
struct FileQuestion {
  std::string title;
  /// Texts and patterns in turn, all separated by "|": "Text files|*.txt|All files|*.*". Several patterns of
  /// one text stand between ";". Outer blanks do not count, and a text without a pattern is one.
  std::string filter;
  /// The folder to begin in, or the file that is proposed. One that does not exist counts for nothing.
  std::string start;
  const Form* owner = nullptr;
  bool asksBeforeNew = false;  ///< SaveFile: asks before a file is made that does not exist yet.
};

enum class Buttons { YesNo, OkCancel, YesNoCancel };
enum class Answer { Yes, No, Ok, Cancel };

/// A question to be answered by one of a few buttons. To close its box without one is Cancel, or No where
/// there is no Cancel.
struct Question {
  std::string text = {};
  std::string title = {};  ///< Empty: the program's.
  Buttons buttons = Buttons::YesNo;
  bool warns = false;  ///< Something is at stake.
  const Form* owner = nullptr;
};

/// Questions to the user in windows of their own. Each call returns when it has been answered, and pumps
/// events meanwhile.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// A text and one button.
  virtual void MessageBox(std::string_view text) = 0;
  virtual Answer Ask(const Question& question) = 0;
  bool AskYesNo(std::string_view text) { return Ask({.text = std::string(text)}) == Answer::Yes; }
  /// The text typed, or none if the user gave up.
  virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) = 0;
  // The path of the file picked, in the encoding of the system's narrow file names, or none if the user gave
  // up.
  /// A file that exists.
  virtual std::optional<std::string> OpenFile(const FileQuestion& question) = 0;
  /// A file to write to; one that exists has been given up by the user.
  virtual std::optional<std::string> SaveFile(const FileQuestion& question) = 0;
  /// A font, beginning with the one given; of those that a printer has, if so asked.
  virtual std::optional<Font> ChooseFont(const Font& font, bool forPrinter, const Form* owner) = 0;
};

/// The window system: shows forms.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;
  /// Called by a form when it is made visible for the first time; the form then reports to the observer that
  /// the window system sets on it.
  virtual void Attach(Form& form) = 0;
  /// Called by a form before it is destroyed.
  virtual void Detach(Form& form) = 0;
  /// Width of the screen in twips.
  virtual std::int32_t ScreenWidth() const = 0;
  /// The part of the screen that windows may cover, in twips.
  virtual Rect WorkArea() const = 0;
  /// The program's title, which the system shows where it lists programs.
  virtual void SetApplicationTitle(const std::string& title) = 0;
};

/// What goes on one printer, with all that the user has chosen for it: which printer, how many copies, the
/// paper.
class PrintJob {
 public:
  virtual ~PrintJob() = default;
  /// Prints a text as one document. False if it failed.
  virtual bool Print(const std::string& text, const Font& font) = 0;
};

/// The system's printers.
class Printers {
 public:
  virtual ~Printers() = default;
  virtual int Count() const = 0;
  /// The name of the default printer; empty if there is none.
  virtual std::string DefaultName() const = 0;
  // Both only where there is a printer. False if it failed.
  /// Prints a text on the default printer as one document, once.
  virtual bool PrintText(const std::string& text, const Font& font) = 0;
  /// Prints a picture of a window as it stands on the default printer.
  virtual bool PrintWindow(const Form& form) = 0;
  // Both return when the user has answered, and pump events meanwhile.
  /// Lets the user choose a printer for one document. None if he gave up.
  virtual std::unique_ptr<PrintJob> Choose(const Form* owner) = 0;
  /// Lets the user choose the system's default printer.
  virtual void ChooseDefault(const Form* owner) = 0;
};

/// What the user is told where a system has no printer, and of a printer that fails.
inline constexpr std::string_view kNoPrinter = "No printer configured";
inline constexpr std::string_view kPrintFailed = "Error printing";

/// The speaker.
class Sound {
 public:
  virtual ~Sound() = default;
  /// Begins a tone; it may go on after the call. Silent where there is no sound.
  virtual void Beep(double hertz, int milliseconds) = 0;
  /// The sound with which the system says "not so".
  virtual void Bell() = 0;
};

/// What else the program asks of the system.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Shows a text file in the system's own viewer, and does not wait for it. False if there is none.
  virtual bool ShowText(const std::string& path) = 0;
  // The clipboard's text, Latin-1, with CR LF at the end of its lines.
  virtual std::string ClipboardText() const = 0;
  virtual void SetClipboardText(const std::string& text) = 0;
};

}  // namespace corvex
