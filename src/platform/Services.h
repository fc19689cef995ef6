#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

/// Questions to the user in windows of their own. Each call returns when it has been answered, and pumps
/// events meanwhile.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  /// A text and one button.
  virtual void MessageBox(std::string_view text) = 0;
  /// True for Yes.
  virtual bool AskYesNo(std::string_view text) = 0;
  /// The text typed, or none if the user gave up.
  virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title) = 0;
  // The path of the file picked, in the encoding of the system's narrow file names, or none if the user gave
  // up.
  /// A file that exists.
  virtual std::optional<std::string> OpenFile(const FileQuestion& question) = 0;
  /// A file to write to; one that exists has been given up by the user.
  virtual std::optional<std::string> SaveFile(const FileQuestion& question) = 0;
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
  /// The program's title, which the system shows where it lists programs.
  virtual void SetApplicationTitle(const std::string& title) = 0;
};

/// The system's printers.
class Printers {
 public:
  virtual ~Printers() = default;
  struct PrintFont {
    std::string name;
    double size = 12;
    bool bold = false;
    bool italic = false;
  };
  /// Prints a text on the default printer and ends the document. False if the system has no printer.
  virtual bool PrintText(const std::string& text, const PrintFont& font) = 0;
  /// Prints a picture of a window as it stands on the default printer. False if the system has no printer.
  virtual bool PrintWindow(const Form& form) = 0;
};

/// What the user is told where a system has no printer.
inline constexpr std::string_view kNoPrinter = "No printer configured";

/// The speaker.
class Sound {
 public:
  virtual ~Sound() = default;
  /// Begins a tone; it may go on after the call. Silent where there is no sound.
  virtual void Beep(double hertz, int milliseconds) = 0;
};

}  // namespace corvex
