#include "session/TestLog.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "session/modLogger.h"
#include "window/PopUp.h"

namespace corvex {

namespace {

constexpr double kPause = 0.3;
/// In seconds. If a step takes this much longer than planned, another screen may be shown than expected.
constexpr double kHeldUp = 2;

/// No log begins in the last minute of a day. A pause over midnight is abandoned, and the rest of the log
/// would be lost.
constexpr double kLastStart = 86400 - 60;

const std::string& Row(const TermControls& window, std::size_t row) {
  return window.corvexLbl[row].caption.Get();
}

/// Returns whether a row contains the word "PIN", alone or followed by a digit: true for "SIM PIN2:", false
/// for "SHIPPING".
bool AsksForPin(std::string_view text) {
  constexpr std::string_view kWord = "PIN";
  const std::string row = UpperCase(text);
  const auto isLetter = [&row](std::size_t place) {
    const char c = place < row.size() ? row[place] : ' ';
    return (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0xC0;
  };
  for (std::size_t at = row.find(kWord); at != row.npos; at = row.find(kWord, at + 1)) {
    if ((at == 0 || !isLetter(at - 1)) && !isLetter(at + kWord.size())) return true;
  }
  return false;
}

/// Returns whether the screen asks for a PIN. Also checks the received row if it has not been painted yet.
bool AsksForPin(const TermControls& window, const SessionState& state) {
  constexpr std::size_t kRow = 3;
  return AsksForPin(Row(window, kRow)) ||
         AsksForPin(state.screenRows[SessionState::kFirstShownRow - 1 + kRow]);
}

std::string_view From(std::string_view text, std::size_t place) {
  return text.substr(std::min(place, text.size()));
}

}  // namespace

/// One run of the macro. When it must stop, all later steps do nothing, so Run needs no checks between them.
/// If a wait is abandoned, Run throws WaitAbandoned.
class TestLog::Macro {
 public:
  explicit Macro(const Parts& parts) : p_(parts) {}

  void Run() {
    ShowPopUp(p_.window, "Generating Test Logs - please wait");
    Wait();
    EscapeOut();
    ClearAverages();
    ReadIdleScreen();
    Wait();
    ReadStatusTable();
    EscapeOut();
    PrintLogs();
    ReadCounters();
    EscapeOut();
  }

 private:
  void ClearAverages() {
    for (const char key : {'9', '7', '4'}) PressAndWait(key);
    SoftKey(2);
    Wait();
    EscapeOut();
  }

  void ReadIdleScreen() {
    Line("Readings from the Idle Screen");
    Line("Signal strength = " + Row(p_.window, TermControls::kSignal));
    for (std::size_t row = 2; row <= 6; ++row) Line(Row(p_.window, row));
    Line("Position shown as " + p_.state.gpsPosText);
  }

  /// Writes the four pages of the table, 21 lines in all. Each line is written immediately, because the
  /// session may end.
  void ReadStatusTable() {
    constexpr std::size_t kNumberRow = 3;
    constexpr std::size_t kNumberPlace = 18;
    constexpr std::size_t kNumberSize = 6;
    for (const char key : {'9', '8', '2'}) PressAndWait(key);
    if (GoesOn())
      p_.main.statusNumber = From(Row(p_.window, kNumberRow), kNumberPlace).substr(0, kNumberSize);
    ReadPage(7);  // intentional: the last of these rows is the signal display
    Line(std::string(10, ' '));
    TurnPage();
    ReadPage(5);  // intentional: leaves out the last line of the second page
    TurnPage();
    ReadPage(6);
    TurnPage();
    ReadPage(6);
  }

  /// Reads a page, from the third row of the screen to `lastRow`. The third row has the modem's cursor
  /// marker, which is left out.
  void ReadPage(std::size_t lastRow) {
    constexpr std::size_t kMarker = 3;
    Line(From(Row(p_.window, 2), kMarker));
    for (std::size_t row = 3; row <= lastRow; ++row) Line(Row(p_.window, row));
  }

  void TurnPage() {
    Wait();
    Down();
    Wait();
    Wait();
    Down();
    Wait();
  }

  /// Lets the modem print its logs. The second soft key leads to the first log. The others are in the menu of
  /// logs, which stays open.
  void PrintLogs() {
    SoftKey(2);
    Wait();
    SoftKey(2);
    Wait();
    SoftKey(1);
    Wait();
    EscapeOut();
    EscapeOut();
    for (const char key : {'9', '4'}) PressAndWait(key);
    for (const char key : {'1', '2', '3', '8', '9'}) {
      PressAndWait(key);
      SoftKey(1);
      Wait();
      Escape();
      Wait();
    }
  }

  void ReadCounters() {
    for (const char key : {'7', '1'}) PressAndWait(key);
    Wait();
    DumpScreen();
    Escape();
    Wait();
    for (const char key : {'2', '3'}) {
      PressAndWait(key);
      DumpScreen();
      Escape();
    }
  }

  void DumpScreen() {
    for (std::size_t row = 0; row <= 6; ++row) Line(Row(p_.window, row));
  }

  void Line(std::string_view text) {
    if (GoesOn()) p_.page.PrintLine(std::string(text) + std::string(kCrLf));
  }

  void PressAndWait(char key) {
    if (MayType()) p_.link.WriteText({&key, 1});
    Wait();
  }
  void SoftKey(int key) {
    if (MayType()) p_.keys.PressSoftKey(key);
  }
  void Escape() {
    if (GoesOn()) p_.keys.SendEscape();
  }
  void Down() {
    if (GoesOn()) p_.keys.SendCursorDown();
  }
  void EscapeOut() {
    constexpr double kSeries = 8 * kPause;
    Spend(kSeries, [this] { p_.keys.SendEscapeSeries(); });
  }
  void Wait() {
    Spend(kPause, [this] { Pause(p_.window.loop(), kPause); });
  }
  /// Runs an action that should take `seconds`. If it takes much longer, a message box or a window has held
  /// it up. The run then ends, since the user is doing something else.
  void Spend(double seconds, const std::function<void()>& act) {
    if (!GoesOn()) return;
    const EventLoop& loop = p_.window.loop();
    const auto began = loop.Now();
    act();
    const std::chrono::duration<double> spent = loop.Now() - began;
    lost_ = lost_ || BoxOpen(p_) || spent.count() > seconds + kHeldUp;
  }

  bool GoesOn() const { return !lost_ && p_.main.mode == ModemMode::Terminal; }
  /// Returns false if the screen asks for a PIN. The macro's digits would be a wrong PIN, and three wrong
  /// PINs lock the SIM card. The run then stops, because the next keys would reach the wrong screen.
  bool MayType() {
    lost_ = lost_ || AsksForPin(p_.window, p_.state);
    return GoesOn();
  }

  const Parts& p_;
  bool lost_ = false;
};

void TestLog::GenerateTestLog() {
  Macro(p_).Run();
}

void TestLog::Check() {
  if (MayBegin() && LogDue(p_.window.loop(), p_.settings)) TakeLog();
  if (p_.main.mode != ModemMode::Closing) p_.window.logCheck.enabled = true;
}

/// Returns whether a message box or a modal window is open. A box about the log's own print jobs is ignored,
/// because there may be no user to close it.
bool TestLog::BoxOpen(const Parts& parts) {
  return parts.window.loop().ModalsOpen() > parts.main.ownBoxes;
}

/// Whether a log can begin now. If not, a log that is due is taken at a later check, since its time has not
/// been stored yet.
bool TestLog::MayBegin() const {
  return p_.settings.logging.active.Get() && p_.main.mode == ModemMode::Terminal && !p_.keys.Busy() &&
         !BoxOpen(p_) && !AsksForPin(p_.window, p_.state) &&
         p_.window.loop().SecondsSinceMidnight() < kLastStart;
}

void TestLog::TakeLog() {
  {
    const ScopedFlag taking(taking_);
    const ScopedFlag logTaken(p_.main.logTaken);
    const frmSDI::LogInProgress log(p_.page);
    try {
      GenerateTestLog();
    } catch (const WaitAbandoned&) {  // the session is being left; the part taken so far is saved
    }
    Save();
  }
  if (ended) ended();
}

/// A log that cannot be saved stays in the print view and is saved with the next one.
void TestLog::Save() {
  const std::string name = LogFileName(p_.window.loop(), p_.main.statusNumber);
  if (taking_ && p_.page.SaveLogToFile(name)) taking_ = false;
}

}  // namespace corvex
